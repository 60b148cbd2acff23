// The command line of a program, with the options that all programs have.
#pragma once

#include "tools/support/OptionTable.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trs::tools {

// Adds --log-level, --help and --version to the options that a program adds itself, --man, which writes its manual
// page, and --completion, which writes what a shell completes of a program without verbs.
class CommandLine {
public:
    static constexpr int wrongUsage = 2;

    // `logLevel`: the severity of the least important lines that are logged unless --log-level says otherwise.
    CommandLine(std::string program, std::string description, int logLevel);
    CommandLine(CommandLine const&) = delete;
    CommandLine& operator=(CommandLine const&) = delete;

    OptionTable& table() { return table_; }
    OptionTable const& table() const { return table_; }
    void add(Option option) { table_.options.push_back(std::move(option)); }
    // Adds --exit-on-eof, for a program that takes commands from standard input.
    void takeCommands();
    // Adds the options that all programs have, so that they come behind its own. parse() does when nobody did.
    void addCommonOptions();

    // Has what is wrong with a command line said by `say` instead of written to standard error.
    void onWrong(std::function<void(std::string const&)> say) { wrong_ = std::move(say); }

    // Reads the command line and sets the log level. `help` in front, and -h, are --help: `help VERB`. The exit code,
    // when the program is to end: 0 after --help and --version, wrongUsage after saying what is wrong.
    std::optional<int> parse(std::vector<std::string> words);
    std::optional<int> parse(int argc, char** argv) { return parse({argv + 1, argv + argc}); }
    bool exitsOnEof() const { return exitsOnEof_; }

    // Whether the text is an endpoint, as the check of an option: empty, or what is wrong with it.
    static std::string checkEndpoint(std::string const& text);
    // Where a simulated unit listens unless it is told otherwise.
    static std::string defaultEndpoint();
    static constexpr char const* defaultEndpointText = "unix:trssim.sock in $XDG_RUNTIME_DIR, else in /tmp";
    // --unit and --timeout, of the programs that call a unit.
    static Option unitOption(std::string& unit);
    static Option timeoutOption(int& milliseconds);

private:
    int complain(std::string const& what) const;

    OptionTable table_;
    std::function<void(std::string const&)> wrong_;
    int logLevel_;
    bool hasCommonOptions_ = false;
    bool exitsOnEof_ = false;
};

} // namespace trs::tools
