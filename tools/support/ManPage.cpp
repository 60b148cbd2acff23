#include "tools/support/ManPage.h"

#include <cctype>

namespace trs::tools {

namespace {

// Text as roff has it: no line begins with a control character, and nothing is taken for an escape.
std::string roff(std::string const& text)
{
    std::string escaped;
    bool isBegin = true;
    for (char const each : text) {
        if (isBegin && (each == '.' || each == '\'')) {
            escaped += "\\&";
        }
        escaped += each == '\\' ? "\\e" : each == '-' ? "\\-" : std::string(1, each);
        isBegin = each == '\n';
    }
    return escaped;
}

std::string upper(std::string text)
{
    for (char& each : text) {
        each = static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
    }
    return text;
}

// "--format TEXT", or an argument's name.
std::string usageOf(Option const& option)
{
    std::string text = "\\fB" + roff(option.name) + "\\fR";
    if (!option.isArgument() && option.takesValue()) {
        text += " \\fI" + roff(option.valueName()) + "\\fR";
    }
    return text;
}

void addOptions(std::string& page, std::vector<Option> const& options, bool areArguments)
{
    for (Option const& option : options) {
        if (option.isArgument() == areArguments) {
            std::string const shown = option.shownDefault();
            page += ".TP\n" + usageOf(option) + '\n' + roff(option.help) +
                    (shown.empty() ? "" : roff(" (default: " + shown + ")")) + '\n';
        }
    }
}

std::string argumentsOf(std::vector<Option> const& options)
{
    std::string text;
    for (Option const& option : options) {
        if (option.isArgument()) {
            std::string const name = "\\fI" + roff(option.name) + "\\fR";
            text += ' ' + (option.isRequired ? name : '[' + name + ']') +
                    (option.takesSeveral() && option.count != 1 ? "..." : "");
        }
    }
    return text;
}

void addVerb(std::string& page, Verb const& verb, std::string const& program)
{
    page += ".SS " + roff(verb.name) + "\n.B " + roff(verb.name) + "\n" + argumentsOf(verb.options) + "\n.PP\n" +
            roff(verb.help) + ".\n";
    addOptions(page, verb.options, true);
    addOptions(page, verb.options, false);
    if (!verb.example.empty()) {
        page += ".PP\nExample: " + roff(program + ' ' + verb.example) + '\n';
    }
}

// What variables stand for which options.
void addEnvironment(std::string& page, std::vector<Option> const& options)
{
    std::string variables;
    for (Option const& option : options) {
        if (!option.environment.empty()) {
            variables += ".TP\n\\fB" + option.environment + "\\fR\nUsed when " + usageOf(option) + " is not given.\n";
        }
    }
    page += variables.empty() ? "" : ".SH ENVIRONMENT\n" + variables;
}

} // namespace

std::string manPage(OptionTable const& table, std::string const& version)
{
    std::string const& description = table.description;
    std::string page = ".TH " + upper(table.program) + R"( 1 "" "trsman )" + version + "\"\n";
    page +=
        ".SH NAME\n" + table.program + " \\- " + roff(description.substr(0, description.find_first_of(".:\n"))) + '\n';
    page += ".SH SYNOPSIS\n.B " + table.program + "\n[\\fIOPTIONS\\fR]" +
            (table.verbs.empty() ? ""
             : table.needsVerb   ? " \\fIVERB\\fR ..."
                                 : " [\\fIVERB\\fR ...]") +
            argumentsOf(table.options) + '\n';
    page += ".SH DESCRIPTION\n" + roff(description) + "\n.SH OPTIONS\n";
    addOptions(page, table.options, true);
    addOptions(page, table.options, false);
    page += table.verbs.empty() ? "" : ".SH VERBS\n";
    for (Verb const& verb : table.verbs) {
        if (!verb.isHidden) {
            addVerb(page, verb, table.program);
        }
    }
    addEnvironment(page, table.options);
    if (!table.exitCodes.empty()) {
        page += ".SH EXIT STATUS\n" + roff(table.exitCodes) + '\n';
    }
    return page;
}

} // namespace trs::tools
