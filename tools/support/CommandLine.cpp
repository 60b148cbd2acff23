#include "tools/support/CommandLine.h"

#include "broker/Log.h"
#include "broker/PrintableText.h"
#include "broker/transport/Endpoint.h"
#include "tools/support/ManPage.h"
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
        return option.name == "--help"
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
        added->check(CLI::Validator([take = *take](std::string const& text) { return take(text); }, ""));
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

void addTo(CLI::App& app, OptionTable const& table)
{
    for (Option const& option : table.options) {
        addTo(app, option);
    }
    for (Verb const& verb : table.verbs) {
        CLI::App& added = *app.add_subcommand(verb.name, verb.help);
        added.fallthrough(); // the program's own options may also follow
        added.group(verb.isHidden ? "" : "Subcommands");
        if (!verb.example.empty()) {
            added.footer("Example: " + table.program + " " + verb.example);
        }
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

// Says why the command line ends the program, be it what was asked for or wrong. The exit code.
int tell(CLI::App const& app, CLI::Error const& end)
{
    std::ostringstream asked;
    std::ostringstream wrong;
    int const code = app.exit(end, asked, wrong);
    print(asked.str());
    std::fputs(wrong.str().c_str(), stderr);
    return code == 0 ? 0 : CommandLine::wrongUsage;
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
    add({.name = "--help", .help = "Print this help and end"});
}

std::optional<int> CommandLine::parse(std::vector<std::string> words)
{
    addCommonOptions();
    if (words.size() == 1 && words.front() == "--man") { // for the build
        print(manPage(table_, TRSMAN_VERSION));
        return 0;
    }
    for (std::string& word : words) {
        guard(word);
    }
    std::reverse(words.begin(), words.end()); // as CLI11 takes them
    CLI::App app(table_.description, table_.program);
    try {
        addTo(app, table_);
        app.parse(std::move(words));
    } catch (CLI::RequiredError const& end) {
        if (!table_.needsVerb || !app.get_subcommands().empty()) {
            return tell(app, end);
        }
        std::vector<std::string> const unknown = app.remaining();
        std::string const wrong = unknown.empty()
                                      ? "a verb is required"
                                      : '\'' + printable(unknown.front()) + "' is no verb of " + table_.program;
        std::fprintf(stderr, "%s; %s --help lists them\n", wrong.c_str(), table_.program.c_str());
        return wrongUsage;
    } catch (CLI::ParseError const& end) {
        return tell(app, end);
    }
    setLogLevel(logLevel_);
    return std::nullopt;
}

} // namespace trs::tools
