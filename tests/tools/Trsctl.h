// trsctl as a child process of a test.
#pragma once

#include "tests/support/Programs.h"

class TrsctlTest : public ProgramTest {
protected:
    struct Result {
        int code;
        std::string output;
        std::string error;
    };
    static std::string joined(std::vector<std::string> const& lines)
    {
        std::string text;
        for (std::string const& line : lines) {
            text += line + '\n';
        }
        return text;
    }
    Result run(Arguments arguments)
    {
        arguments.insert(arguments.begin(), {"--unit", endpoint});
        ChildProcess child(program("trsctl"), arguments);
        int const code = child.waitForExit();
        return {code, joined(child.readRest()), joined(child.readRest(ChildProcess::Stream::error))};
    }
    // A line of a shell, which finds the programs by their names.
    static Result shell(std::string const& line)
    {
        ChildProcess child("/bin/sh", {"-c", "PATH=" + program("") + ":$PATH; " + line});
        int const code = child.waitForExit();
        return {code, joined(child.readRest()), joined(child.readRest(ChildProcess::Stream::error))};
    }
    std::string output(Arguments const& arguments)
    {
        Result const result = run(arguments);
        EXPECT_EQ(result.code, 0) << result.error;
        return result.output;
    }
};
