// The programs as child processes of a test.
#pragma once

#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

class ProgramTest : public support::BrokerTest {
protected:
    using ChildProcess = support::ChildProcess;
    using Arguments = std::vector<std::string>;

    // A program, or a script of the sources, by its path there.
    static std::string program(std::string const& name) { return TRSMAN_TOOLS_DIR "/" + name; }
    static std::string source(std::string const& name) { return TRSMAN_SOURCE_DIR "/" + name; }
    // A unit that serves at the test's socket.
    struct Unit : ChildProcess {
        Unit(std::string const& endpoint, Arguments arguments)
            : ChildProcess(program("trssim"), with(endpoint, arguments))
        {
            readUntil("ready on " + endpoint);
        }
        static Arguments& with(std::string const& endpoint, Arguments& arguments)
        {
            arguments.insert(arguments.begin(), {"--listen", endpoint});
            return arguments;
        }
        // Has a command executed, and returns the first line that it says.
        std::string does(std::string const& command)
        {
            EXPECT_TRUE(writeLine(command));
            return readLine().value_or("");
        }
        // The same for a command that is wrong.
        std::string rejects(std::string const& command)
        {
            EXPECT_TRUE(writeLine(command));
            return readLine(Stream::error).value_or("");
        }
    };
    Unit unit(Arguments arguments = {}) { return {endpoint, std::move(arguments)}; }

    bool socketExists() const
    {
        struct stat present {};
        return ::lstat(path.c_str(), &present) == 0;
    }

    std::string const endpoint = "unix:" + path;
};
