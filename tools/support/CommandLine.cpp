#include "tools/support/CommandLine.h"

#include "platform/host/CallFailure.h"
#include "platform/host/Endpoint.h"
#include "platform/host/Log.h"
#include "tools/support/ManPage.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

namespace tools {

namespace {

// Replaces the name of a level by the least important severity that it includes. Empty, or what is wrong with the name.
std::string levelToSeverity(std::string& level)
{
    static std::map<std::string_view, char const*> const severities{
        {"none", "0"}, {"error", "3"}, {"warning", "4"}, {"info", "6"}, {"debug", "7"}};
    auto const found = severities.find(level);
    if (found == severities.end()) {
        return "'" + host::printable(level) + "' is none of none, error, warning, info and debug";
    }
    level = found->second;
    return {};
}

} // namespace

CommandLine::CommandLine(std::string const& program, std::string const& description, int logLevel)
    : app_(description, program), logLevel_(logLevel)
{
}

std::string CommandLine::checkEndpoint(std::string const& text)
{
    host::Endpoint endpoint;
    return host::Endpoint::parse(text, endpoint);
}

std::string CommandLine::defaultEndpoint()
{
    char const* const directory = std::getenv("XDG_RUNTIME_DIR");
    return std::string("unix:") + (directory != nullptr && *directory != '\0' ? directory : "/tmp") + "/trssim.sock";
}

void CommandLine::takeCommands() { app_.add_flag("--exit-on-eof", exitsOnEof_, "End with standard input"); }

void CommandLine::addCommonOptions()
{
    if (hasCommonOptions_) {
        return;
    }
    hasCommonOptions_ = true;
    app_.add_option("--log-level", logLevel_, "Log lines on standard error: none, error, warning, info or debug")
        ->type_name("LEVEL")
        ->transform(CLI::Validator(levelToSeverity, ""));
    app_.set_version_flag("--version", app_.get_name() + " " TRSMAN_VERSION, "Print the version and end");
    app_.set_help_flag("--help", "Print this help and end");
}

std::optional<int> CommandLine::parse(int argc, char const* const* argv)
{
    addCommonOptions();
    if (argc == 2 && std::string_view(argv[1]) == "--man") { // for the build
        std::fputs(manPage(app_, TRSMAN_VERSION).c_str(), stdout);
        return 0;
    }
    try {
        app_.parse(argc, argv);
    } catch (CLI::ParseError const& end) {
        return app_.exit(end) == 0 ? 0 : wrongUsage;
    }
    host::setLogLevel(logLevel_);
    return std::nullopt;
}

} // namespace tools
