// What the programs do with their command lines, their input and their ends; and the tour.
#include "tests/support/Programs.h"

#include <fstream>

namespace {

using testing::AllOf;
using testing::HasSubstr;

class Programs : public ProgramTest {};

TEST_F(Programs, RejectWrongUsageAndNameWhatIsWrong)
{
    struct {
        std::string name;
        Arguments arguments;
        std::string offender;
    } const cases[] = {
        {"trssim", {"--nope"}, "--nope"},
        {"trssim", {"extra"}, "extra"},
        {"trssim", {"--listen"}, "--listen"},
        {"trssim", {"--listen", "nowhere"}, "'nowhere'"},
        {"trssim", {"--listen", "tcp:70000"}, "70000"},
        {"trssim", {"--log-level", "6"}, "--log-level: 6 not in"},
        {"trssim", {"--listen", endpoint, "--do", "address 10.0.0.7", "--do", "sing loudly"}, "'sing'"},
        {"trsadapter", {"--unit", ""}, "--unit"},
        {"trsadapter", {"--timeout", "0"}, "--timeout"},
        {"trsadapter", {"--timeout", "soon"}, "--timeout"},
        {"trsadapter", {"--alarm", "1"}, "'1'"},
        {"trsadapter", {"--alarm", "1,2,0"}, "'1,2,0'"},
        {"trsadapter", {"--alarm", "1,99999999999"}, "'1,99999999999'"},
    };
    for (auto const& [name, arguments, offender] : cases) {
        ChildProcess child(program(name), arguments);
        EXPECT_EQ(child.waitForExit(), 2) << name << ' ' << offender;
        EXPECT_THAT(child.readLine(ChildProcess::Stream::error), testing::Optional(HasSubstr(offender)));
    }
    EXPECT_FALSE(socketExists());
}

TEST_F(Programs, ExplainThemselves)
{
    for (char const* const name : {"trssim", "trsadapter"}) {
        ChildProcess help(program(name), {"--help"});
        EXPECT_EQ(help.waitForExit(), 0);
        std::string text;
        for (std::string const& line : help.readRest()) {
            text += line + '\n';
        }
        EXPECT_THAT(text, AllOf(HasSubstr("Usage: " + std::string(name)), HasSubstr("--log-level"),
                                HasSubstr("--exit-on-eof"), HasSubstr("--version")));
        ChildProcess version(program(name), {"--version"});
        EXPECT_EQ(version.waitForExit(), 0);
        EXPECT_THAT(version.readLine(), testing::Optional(testing::StartsWith(std::string(name) + " 0.")));
    }
}

TEST_F(Programs, SurviveHostileInput)
{
    Unit sim = unit({"--address", "10.0.0.7"});
    struct {
        std::string line;
        std::string complaint;
    } const cases[] = {
        {"sing", "'sing' is no command"},
        {std::string("ad\0dress\x1b[2J", 12), "'ad\\x00dress\\x1b[2J' is no command"},
        {std::string(5000, 'x'), "more than 4096 bytes"},
        {"raise los" + std::string(65536, ' ') + "x", "more than 4096 bytes"},
        {"address \"10.0.0.8", "'10.0.0.8' is not closed"},
        {"raise", "NAME is missing"},
        {"raise los deg", "'deg' is one word too many"},
        {"raise LOS", "'LOS' is no condition"},
        {"alarms perhaps", "'perhaps' is neither"},
        {"state open", "'open' is no state"},
        {"tick 0", "'0' is no number"},
        {"tick -1", "'-1' is no number"},
        {"tick 1e3", "'1e3' is no number"},
        {"tick 99999999999999999999", "'99999999999999999999' is no number"},
        {"stop now", "'now' is one word too many"},
    };
    for (auto const& [line, complaint] : cases) {
        EXPECT_THAT(sim.rejects(line), HasSubstr(complaint));
    }
    EXPECT_TRUE(sim.write("\n \t\r\n  address  \r\n")); // blanks are no commands
    EXPECT_EQ(sim.readLine(), "address 10.0.0.7");
    EXPECT_TRUE(sim.writeLine("conditions"));
    EXPECT_THAT(sim.readUntil("los"), HasSubstr("inactive")); // of the lines that were too long, nothing was executed

    ChildProcess adapter(program("trsadapter"), {"--unit", endpoint, "--log-level", "none"});
    EXPECT_TRUE(adapter.write("alarm 1;2\nalarm ,\nalarm\nquit\n"));
    EXPECT_EQ(adapter.waitForExit(), 0);
    EXPECT_THAT(adapter.readRest(ChildProcess::Stream::error),
                testing::ElementsAre("alarm: '1;2' is not TYPE,STATE", "alarm: ',' is not TYPE,STATE",
                                     "alarm: TYPE,STATE is missing: alarm TYPE,STATE"));
}

TEST_F(Programs, EndCleanlyHoweverTheyAreEnded)
{
    using End = void (*)(ChildProcess&);
    End const ends[] = {
        [](ChildProcess& child) { child.signal(SIGTERM); },
        [](ChildProcess& child) { child.signal(SIGINT); },
        [](ChildProcess& child) { child.closeInput(); },
    };
    for (End const end : ends) {
        Unit sim = unit({"--exit-on-eof"});
        ChildProcess adapter(program("trsadapter"), {"--unit", endpoint, "--exit-on-eof"});
        adapter.readUntil("the agent is reached");
        end(adapter);
        EXPECT_EQ(adapter.waitForExit(), 0);
        end(sim);
        EXPECT_EQ(sim.waitForExit(), 0);
        EXPECT_FALSE(socketExists());
    }
    Unit sim = unit();
    sim.closeInput();
    ChildProcess adapter(program("trsadapter"), {"--unit", endpoint, "--once"});
    EXPECT_EQ(adapter.waitForExit(), 0) << "the unit ended with its input";
    sim.signal(SIGTERM);
    EXPECT_EQ(sim.waitForExit(), 0);

    Unit last = unit({"--exit-on-eof", "--address", "10.0.0.7"});
    EXPECT_TRUE(last.write("address")); // the last line may come without its end
    last.closeInput();
    EXPECT_EQ(last.waitForExit(), 0);
    EXPECT_EQ(last.readLine(), "address 10.0.0.7");

    Unit told = unit({"--do", "hang"}); // a call without an answer does not keep the unit from ending
    ChildProcess waiting(program("trsadapter"), {"--unit", endpoint, "--once"});
    told.readUntil("hanging in getPublicIpAddrRmi");
    EXPECT_TRUE(told.writeLine("stop"));
    EXPECT_EQ(told.waitForExit(), 0);
    EXPECT_FALSE(socketExists());
}

TEST_F(Programs, LeaveASocketInUseAlone)
{
    Unit first = unit({"--address", "10.0.0.7"});
    ChildProcess second(program("trssim"), {"--listen", endpoint});
    EXPECT_EQ(second.waitForExit(), 1);
    EXPECT_THAT(second.readLine(ChildProcess::Stream::error), testing::Optional(HasSubstr(path)));
    EXPECT_EQ(second.readLine(), std::nullopt);
    EXPECT_EQ(first.does("address"), "address 10.0.0.7");

    first.signal(SIGKILL);
    EXPECT_EQ(first.waitForExit(), 128 + SIGKILL);
    EXPECT_TRUE(socketExists());
    Unit third = unit(); // a socket that was left behind is in nobody's use
}

TEST_F(Programs, ServeSeveralEndpoints)
{
    Unit sim = unit({"--listen", "tcp:0", "--do", "raise deg", "--address", ""});
    std::string const line = sim.readLine().value_or("");
    ASSERT_THAT(line, testing::StartsWith("ready on tcp:127.0.0.1:"));
    for (std::string const& where : {endpoint, line.substr(line.find("tcp:"))}) {
        ChildProcess adapter("/usr/bin/env", {"TRS_UNIT=" + where, program("trsadapter"), "--once"});
        EXPECT_EQ(adapter.waitForExit(), 0) << where;
    }
}

TEST_F(Programs, MeetWhereTheUsersRuntimeDirectoryIs)
{
    std::string const socket = directory.file("trssim.sock");
    std::string const environment = "XDG_RUNTIME_DIR=" + socket.substr(0, socket.rfind('/'));
    ChildProcess sim("/usr/bin/env", {environment, program("trssim")});
    EXPECT_EQ(sim.readLine(), "ready on unix:" + socket);
    ChildProcess adapter("/usr/bin/env", {"-u", "TRS_UNIT", environment, program("trsadapter"), "--once"});
    EXPECT_EQ(adapter.waitForExit(), 0);
}

TEST_F(Programs, EndWhenNobodyReadsWhatTheySay)
{
    ChildProcess sim("/bin/sh", {"-c", "{ " + program("trssim") + " --listen " + endpoint +
                                           "; echo \"exit code $?\" >&2; } | { read line; echo \"$line\"; }"});
    EXPECT_EQ(sim.readLine(), "ready on " + endpoint);
    while (sim.writeLine("address")) {
    }
    EXPECT_EQ(sim.waitForExit(), 0);
    sim.readUntil("exit code 0", ChildProcess::Stream::error);
    EXPECT_FALSE(socketExists());
}

class Tour : public ProgramTest {
protected:
    Tour()
    {
        ::mkdir(scratch.c_str(), 0700);
        ::mkdir(programs.c_str(), 0700);
    }
    ~Tour() override
    {
        ::unlink((programs + "/trssim").c_str());
        ::unlink((programs + "/trsadapter").c_str());
        ::rmdir(programs.c_str());
        EXPECT_EQ(::rmdir(scratch.c_str()), 0) << "the tour left something behind";
    }
    ChildProcess tour(std::string const& where)
    {
        return ChildProcess("/usr/bin/env", {"TMPDIR=" + scratch, source("scripts/tour"), where});
    }

    std::string const scratch = path + ".tmp"; // where the tour makes its directory
    std::string const programs = path + ".bin";
};

TEST_F(Tour, ShowsAllStepsAndLeavesNothingBehind)
{
    ChildProcess child = tour(TRSMAN_TOOLS_DIR);
    EXPECT_EQ(child.waitForExit(), 0);
    child.readUntil(" steps went as they should");
}

// With a unit that gets no further than to be ready.
TEST_F(Tour, LeavesNothingBehindWhenItIsInterrupted)
{
    std::string const unit = programs + "/trssim";
    std::ofstream(unit) << "#!/bin/sh\necho \"unit $$ is not ready on $3\"\nexec sleep 100\n";
    ::chmod(unit.c_str(), 0700);
    EXPECT_EQ(::symlink(program("trsadapter").c_str(), (programs + "/trsadapter").c_str()), 0);
    for (int const number : {SIGINT, SIGTERM, SIGHUP}) {
        ChildProcess child = tour(programs);
        std::string const line = child.readUntil("is not ready on");
        child.signal(number);
        EXPECT_EQ(child.waitForExit(), 128 + number);
        pid_t const started = std::atoi(line.substr(line.find("unit ", line.find("unit ") + 1) + 5).c_str());
        ASSERT_GT(started, 0) << line;
        EXPECT_EQ(::kill(started, 0), -1) << "the unit is still there";
    }
}

TEST_F(Tour, FailsWithTheStepThatFailed)
{
    ChildProcess child = tour(programs);
    EXPECT_EQ(child.waitForExit(), 1);
    child.readUntil("FAILED in step 1, the adapter starts and applies the unit's address: the unit did not say 'ready");
}

} // namespace
