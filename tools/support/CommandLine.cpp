#include "tools/support/CommandLine.h"

#include "broker/Log.h"
#include "broker/PrintableText.h"
#include "broker/transport/Endpoint.h"
#include "tools/support/CompletionScript.h"
#include "tools/support/ManPage.h"
#include "tools/support/Nearest.h"
#include "tools/support/StandardStreams.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace trs::tools {

namespace {

constexpr int longestTimeout = 600000;

// CLI11 takes a word in brackets for a list of its own, whose brackets it drops. A JSON array stays a word with a blank
// behind it, which is taken away again.
void guard(std::string& word) { word += word.starts_with('[') ? " " : ""; }

std::string unguard(std::string& word)
{
    if (word.starts_with('[')) {
        word.pop_back();
    }
    return {};
}

// Whether a text is a number within a range, ends included. Empty, or what is wrong with it.
std::string checkRange(std::string const& text, std::pair<double, double> range)
{
    double number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size() && number >= range.first && number <= range.second) {
        return {};
    }
    return fmt::format("'{}' is not a number from {:.12g} to {:.12g}", printable(text), range.first, range.second);
}

// Has CLI11 put an option's value where it belongs.
struct Adder {
    CLI::App& app;
    Option const& option;

    CLI::Option* operator()(std::monostate /*unused*/) const
    {
        return option.longName() == "--help"
                   ? app.set_help_flag(option.name, option.help)
                   : app.set_version_flag(option.name, app.get_name() + " " TRSMAN_VERSION, option.help);
    }
    CLI::Option* operator()(bool* target) const { return app.add_flag(option.name, *target, option.help); }
    CLI::Option* operator()(Option::Take const& /*unused*/) const // addTo() adds it behind the checks
    {
        return app.add_option_function<std::string>(
            option.name, [](std::string const&) {}, option.help);
    }
    CLI::Option* operator()(std::vector<std::string>* target) const
    {
        CLI::Option* const added = app.add_option(option.name, *target, option.help);
        added->transform(CLI::Validator(unguard, ""));
        return option.isArgument() ? added : added->allow_extra_args(false);
    }
    CLI::Option* operator()(std::string* target) const
    {
        return app.add_option(option.name, *target, option.help)->transform(CLI::Validator(unguard, ""));
    }
    template <class Number>
    CLI::Option* operator()(Number* target) const
    {
        return app.add_option(option.name, *target, option.help);
    }
};

void addTo(CLI::App& app, Option const& option)
{
    CLI::Option* const added = std::visit(Adder{app, option}, option.target);
    added->required(option.isRequired);
    if (option.takesValue() && (!option.isArgument() || !option.choices.empty())) {
        added->type_name(option.valueName());
    }
    if (option.count > 0) {
        added->expected(option.count);
    }
    if (!option.choices.empty()) {
        added->check(CLI::IsMember(option.choices).description(""));
    }
    if (option.range) {
        added->check(
            CLI::Validator([range = *option.range](std::string const& text) { return checkRange(text, range); }, ""));
    }
    if (option.check) {
        added->check(CLI::Validator([check = option.check](std::string const& text) { return check(text); }, ""));
    }
    if (auto const* const take = std::get_if<Option::Take>(&option.target)) {
        added->check(CLI::Validator(
            [take = *take](std::string text) {
                unguard(text);
                return take(text);
            },
            ""));
    }
    if (!option.environment.empty()) {
        added->envname(option.environment);
    }
    if (option.showsDefault) {
        added->default_str(option.shownDefault());
    }
}

// What the help says under the options.
std::string footerOf(OptionTable const& table)
{
    return table.exitCodes.empty() ? std::string() : "Exit codes: " + table.exitCodes;
}

// What the help of a verb says under its options: an example, and what all verbs take.
std::string footerOf(OptionTable const& table, Verb const& verb)
{
    constexpr std::size_t widest = 30;
    std::string text = verb.example.empty() ? "" : "Example: " + table.program + ' ' + verb.example + "\n\n";
    text += "Options of all verbs:\n";
    for (Option const& option : table.options) {
        if (!option.isArgument()) {
            std::string const name = "  " + option.name + (option.takesValue() ? ' ' + option.valueName() : "");
            std::string const margin = name.size() + 2 > widest ? '\n' + std::string(widest, ' ') : std::string();
            text += fmt::format("{:{}}{}{}\n", name, margin.empty() ? widest : 0, margin, option.help);
        }
    }
    return text;
}

void addTo(CLI::App& app, OptionTable const& table)
{
    for (Option const& option : table.options) {
        addTo(app, option);
    }
    for (Verb const& verb : table.verbs) {
        CLI::App& added = *app.add_subcommand(verb.name, verb.help);
        added.fallthrough(); // the program's own options may also follow
        added.group(verb.isHidden ? "" : "Subcommands");
        added.footer([&table, &verb] { return footerOf(table, verb); });
        if (verb.chosen) {
            added.final_callback(verb.chosen);
        }
        for (Option const& option : verb.options) {
            addTo(added, option);
        }
    }
    app.require_subcommand(table.needsVerb ? 1 : 0, 1);
    app.footer(footerOf(table));
}

// The names of all options that a verb, or without one the program, takes.
std::vector<std::string> optionNames(OptionTable const& table, Verb const* verb)
{
    std::vector<std::string> names;
    auto const add = [&names](std::vector<Option> const& options) {
        for (Option const& each : options) {
            if (!each.isArgument()) {
                names.emplace_back(each.longName());
            }
        }
    };
    add(table.options);
    if (verb != nullptr) {
        add(verb->options);
    }
    return names;
}

// What is wrong with words that nothing takes.
std::string whyUnknown(OptionTable const& table, CLI::App const& app)
{
    std::vector<std::string> const left = app.remaining(true);
    std::string word = left.empty() ? "" : left.front();
    unguard(word);
    std::string const quoted = '\'' + printable(word) + '\'';
    std::vector<CLI::App*> const chosen = app.get_subcommands();
    auto const verb = std::ranges::find_if(
        table.verbs, [&](Verb const& each) { return !chosen.empty() && each.name == chosen.front()->get_name(); });
    bool const isVerb = verb != table.verbs.end();
    std::string const taker = table.program + (isVerb ? ' ' + verb->name : "");
    if (word.starts_with('-')) {
        std::vector<std::string> const names = optionNames(table, isVerb ? &*verb : nullptr);
        return quoted + " is no option of " + taker + didYouMean(word.substr(0, word.find('=')), names);
    }
    if (table.needsVerb && !isVerb) {
        std::vector<std::string> verbs;
        for (Verb const& each : table.verbs) {
            verbs.push_back(each.isHidden ? "" : each.name);
        }
        return quoted + " is no verb of " + table.program + "; " + table.program + " --help lists them" +
               didYouMean(word, verbs);
    }
    return quoted + " is one word too many for " + taker;
}

} // namespace

CommandLine::CommandLine(std::string program, std::string description, int logLevel)
    : table_{.program = std::move(program), .description = std::move(description)}, logLevel_(logLevel)
{
}

std::string CommandLine::checkEndpoint(std::string const& text)
{
    Endpoint endpoint;
    return Endpoint::parse(text, endpoint);
}

std::string CommandLine::defaultEndpoint()
{
    char const* const directory = std::getenv("XDG_RUNTIME_DIR");
    return std::string("unix:") + (directory != nullptr && *directory != '\0' ? directory : "/tmp") + "/trssim.sock";
}

Option CommandLine::unitOption(std::string& unit)
{
    return {.name = "--unit",
            .target = &unit,
            .help = "Where the unit serves (default: " + std::string(defaultEndpointText) + ")",
            .type = "ENDPOINT",
            .check = checkEndpoint,
            .environment = "TRS_UNIT"};
}

Option CommandLine::timeoutOption(int& milliseconds)
{
    return {.name = "--timeout",
            .target = &milliseconds,
            .help = "How long a call may take, in milliseconds",
            .type = "MS",
            .range = {{1, longestTimeout}},
            .showsDefault = true};
}

void CommandLine::takeCommands()
{
    add({.name = "--exit-on-eof", .target = &exitsOnEof_, .help = "End with standard input"});
}

void CommandLine::addCommonOptions()
{
    if (hasCommonOptions_) {
        return;
    }
    hasCommonOptions_ = true;
    add(choice<int>("--log-level", "The least important log lines on standard error",
                    {{"none", 0}, {"error", 3}, {"warning", 4}, {"info", 6}, {"debug", 7}},
                    [this](int severity) { logLevel_ = severity; }));
    add({.name = "--version", .help = "Print the version and end"});
    add({.name = "-h,--help", .help = "Print this help and end"});
}

int CommandLine::complain(std::string const& what) const
{
    if (wrong_) {
        wrong_(what);
    } else {
        std::fprintf(stderr, "%s\n", what.c_str());
    }
    return wrongUsage;
}

std::optional<int> CommandLine::parse(std::vector<std::string> words)
{
    addCommonOptions();
    if (words.size() == 1 && words.front() == "--man") { // for the build
        print(manPage(table_, TRSMAN_VERSION));
        return 0;
    }
    if (words.size() == 2 && words.front() == "--completion") { // likewise
        print(completionScript(table_, words.back()));
        return 0;
    }
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    for (std::string& word : words) {
        guard(word);
    }
    std::reverse(words.begin(), words.end()); // as CLI11 takes them
    CLI::App app(table_.description, table_.program);
    try {
        addTo(app, table_);
        app.parse(std::move(words));
    } catch (CLI::Success const& end) {
        std::ostringstream asked;
        app.exit(end, asked, asked);
        print(asked.str());
        return 0;
    } catch (CLI::ExtrasError const&) {
        return complain(whyUnknown(table_, app));
    } catch (CLI::RequiredError const& end) {
        if (!table_.needsVerb || !app.get_subcommands().empty()) {
            return complain(end.what());
        }
        return complain(app.remaining().empty() ? "a verb is required; " + table_.program + " --help lists them"
                                                : whyUnknown(table_, app));
    } catch (CLI::ParseError const& end) {
        return complain(end.what());
    }
    setLogLevel(logLevel_);
    return std::nullopt;
}

} // namespace trs::tools
