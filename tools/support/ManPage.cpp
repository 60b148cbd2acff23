#include "tools/support/ManPage.h"

namespace tools {

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

bool isShown(CLI::Option const& option) { return !option.get_group().empty(); }

// "--format TEXT", or a positional's name.
std::string usageOf(CLI::Option const& option)
{
    std::string text = "\\fB" + roff(option.get_name()) + "\\fR";
    if (option.nonpositional() && !option.get_type_name().empty()) {
        text += " \\fI" + roff(option.get_type_name()) + "\\fR";
    }
    return text;
}

void addOptions(std::string& page, CLI::App const& app, bool arePositional)
{
    for (CLI::Option const* const option : app.get_options()) {
        if (isShown(*option) && option->get_positional() == arePositional) {
            page += ".TP\n" + usageOf(*option) + '\n' + roff(option->get_description()) + '\n';
        }
    }
}

std::string synopsisOf(CLI::App const& app)
{
    std::string text;
    for (CLI::Option const* const option : app.get_options()) {
        if (isShown(*option) && option->get_positional()) {
            std::string const name = "\\fI" + roff(option->get_name()) + "\\fR";
            text += ' ' + (option->get_required() ? name : '[' + name + ']');
            text += option->get_items_expected_max() > 1 ? "..." : "";
        }
    }
    return text;
}

void addVerbs(std::string& page, CLI::App const& program)
{
    for (CLI::App const* const verb :
         program.get_subcommands([](CLI::App const* each) { return !each->get_group().empty(); })) {
        page += ".SS " + roff(verb->get_name()) + "\n.B " + roff(verb->get_name()) + "\n" + synopsisOf(*verb) +
                "\n.PP\n" + roff(verb->get_description()) + ".\n";
        addOptions(page, *verb, true);
        addOptions(page, *verb, false);
        if (!verb->get_footer().empty()) {
            page += ".PP\n" + roff(verb->get_footer()) + '\n';
        }
    }
}

} // namespace

std::string manPage(CLI::App const& program, std::string const& version)
{
    std::string const& name = program.get_name();
    std::string const description = program.get_description();
    std::string page = ".TH " + upper(name) + R"( 1 "" "trsman )" + version + "\"\n";
    page += ".SH NAME\n" + name + " \\- " + roff(description.substr(0, description.find_first_of(".:\n"))) + '\n';
    page += ".SH SYNOPSIS\n.B " + name + "\n[\\fIOPTIONS\\fR]" +
            (program.get_subcommands({}).empty() ? "" : " \\fIVERB\\fR ...") + synopsisOf(program) + '\n';
    page += ".SH DESCRIPTION\n" + roff(description) + "\n.SH OPTIONS\n";
    addOptions(page, program, true);
    addOptions(page, program, false);
    if (!program.get_subcommands({}).empty()) {
        page += ".SH VERBS\n";
        addVerbs(page, program);
    }
    if (!program.get_footer().empty()) {
        page += ".SH NOTES\n" + roff(program.get_footer()) + '\n';
    }
    return page;
}

} // namespace tools
