// Documents whose commands are run: what they show is what the programs say.
#include "tests/tools/Trsctl.h"

#include <filesystem>
#include <fstream>
#include <regex>

namespace {

// "    $ COMMAND", with "# CODE" behind it for an exit code that is not 0, and the lines that it says, as indented. In
// them "..." stands for anything, and a line of it for any number of lines.
struct SessionStep {
    int line;
    std::string command;
    int code = 0;
    std::string said = {};
};

std::vector<SessionStep> stepsOf(std::string const& file)
{
    std::ifstream document(file);
    std::vector<SessionStep> steps;
    bool isOpen = false;
    int number = 0;
    for (std::string line; std::getline(document, line);) {
        ++number;
        std::smatch parts;
        if (std::regex_match(line, parts, std::regex("    \\$ (.*?)(?: +# ([0-9]+))?"))) {
            steps.push_back({number, parts[1], parts[2].matched ? std::stoi(parts[2]) : 0});
            isOpen = true;
        } else if (isOpen && line.starts_with("    ")) {
            steps.back().said += line.substr(4) + '\n';
        } else {
            isOpen = false;
        }
    }
    return steps;
}

// Whether a text is what a document shows, with "..." for anything.
bool isShown(std::string const& shown, std::string const& said)
{
    std::string pattern;
    for (char const each : shown) {
        pattern += std::string_view("\\^$.|?*+()[]{}").find(each) != std::string_view::npos ? "\\" : "";
        pattern += each;
    }
    pattern = std::regex_replace(pattern, std::regex("\\\\\\.\\\\\\.\\\\\\."), "\x01");
    std::string expression;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        bool const isWhole = pattern[i] == '\x01' && (i == 0 || pattern[i - 1] == '\n') && pattern[i + 1] == '\n';
        expression += isWhole ? "(?:[^\n]*\n)*?" : pattern[i] == '\x01' ? "[^\n]*" : std::string(1, pattern[i]);
        i += isWhole ? 1 : 0;
    }
    return std::regex_match(said, std::regex(expression));
}

class TrsctlSession : public TrsctlTest {
protected:
    TrsctlSession()
    {
        ::setenv("TRS_UNIT", endpoint.c_str(), 1);
        ::setenv("XDG_STATE_HOME", directory.file("home").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", directory.file("home").c_str(), 1);
        std::filesystem::create_directories(directory.file("home") + "/here");
    }
    ~TrsctlSession() override
    {
        ::unsetenv("TRS_UNIT");
        ::unsetenv("XDG_STATE_HOME");
        ::unsetenv("XDG_CONFIG_HOME");
        std::filesystem::remove_all(directory.file("home"));
    }

    // Runs all commands of a document, in which a unit serves where trssim does unless told. How many there are.
    std::size_t follow(std::string const& document)
    {
        ChildProcess unit("/bin/sh", {"-c", "exec " + program("trssim") + " --listen " + endpoint +
                                                " --clock stepped --address 10.0.0.7 >" + directory.file("said")});
        EXPECT_EQ(run({"--wait", "20", "get", "IpNode", "mtu"}).code, 0);
        std::vector<SessionStep> const steps = stepsOf(source(document));
        for (SessionStep const& step : steps) {
            Result result = shell("cd " + directory.file("home") + "/here && { " +
                                  std::regex_replace(step.command, std::regex("/tmp/trssim.sock"), path) + "\n} 2>&1");
            result.output = std::regex_replace(result.output, std::regex(path), "/tmp/trssim.sock");
            EXPECT_EQ(result.code, step.code) << document << ':' << step.line << ": " << step.command;
            EXPECT_TRUE(isShown(step.said, result.output))
                << document << ':' << step.line << ": " << step.command << "\n--- shown:\n"
                << step.said << "--- said:\n"
                << result.output;
        }
        return steps.size();
    }
};

TEST_F(TrsctlSession, EveryCommandSaysWhatItShall) { EXPECT_GE(follow("tests/data/trsctl-session.md"), 150U); }

TEST_F(TrsctlSession, TheFirstHourWithAUnitIsAsItsPageShowsIt) { EXPECT_GE(follow("docs/first-hour.md"), 20U); }

} // namespace
