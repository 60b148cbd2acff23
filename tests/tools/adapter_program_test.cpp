// trsadapter against a unit of its own.
#include "tests/support/Programs.h"

namespace {

class AdapterProgram : public ProgramTest {
protected:
    ChildProcess adapter(Arguments arguments = {})
    {
        arguments.insert(arguments.begin(), {"--unit", endpoint, "--log-level", "none"});
        return ChildProcess(program("trsadapter"), arguments);
    }
};

TEST_F(AdapterProgram, TellsByItsExitCodeWhetherAnAlarmWasAccepted)
{
    struct {
        std::string alarm;
        std::string answer;
        int code;
        std::string outcome;
    } const cases[] = {
        {"0,0", "accept", 0, "alarm 0,0 delivered and accepted"},
        {"1,2", "accept", 0, "alarm 1,2 delivered and accepted"},
        {"1,2", "refuse", 1, "alarm 1,2 delivered and refused"},
        {"2,0", "accept", 1, "alarm 2,0 is invalid and was not sent"},
        {"1,-1", "accept", 1, "alarm 1,-1 is invalid and was not sent"},
    };
    Unit sim = unit();
    for (auto const& [alarm, answer, code, outcome] : cases) {
        sim.does("alarms " + answer);
        ChildProcess child = adapter({"--alarm", alarm, "--once"});
        EXPECT_EQ(child.waitForExit(), code) << outcome;
        child.readUntil(outcome);
        if (outcome.find("delivered") != std::string::npos) {
            EXPECT_EQ(sim.readLine(), "alarm " + alarm + " received and " + answer + (answer == "accept" ? "ed" : "d"));
        }
    }
    EXPECT_EQ(sim.does("address"), "no address") << "an invalid alarm was sent";
}

TEST_F(AdapterProgram, SaysThatNoUnitIsThere)
{
    ChildProcess child = adapter({"--alarm", "1,2", "--once"});
    EXPECT_EQ(child.waitForExit(), 1);
    EXPECT_THAT(child.readRest(), testing::ElementsAre("the agent cannot be reached",
                                                       "alarm 1,2 was not sent: the agent cannot be reached"));
}

TEST_F(AdapterProgram, FollowsTheAddressAndIgnoresAnEmptyOne)
{
    Unit sim = unit();
    ChildProcess child = adapter();
    EXPECT_EQ(child.readLine(), "the agent is reached");
    EXPECT_TRUE(child.writeLine("address"));
    EXPECT_EQ(child.readLine(), "no address");
    for (int i = 1; i <= 50; ++i) {
        sim.writeLine("announce 10.0.0." + std::to_string(i));
    }
    child.readUntil("applied 10.0.0.50");

    EXPECT_TRUE(
        sim.write("announce \"\"\naddress 10.0.0.51\n")); // of the one nobody is told, of the other only by asking
    sim.readUntil("an empty address announced");
    sim.readUntil("address 10.0.0.51");
    EXPECT_TRUE(child.write("announce\n"));
    sim.readUntil("address 10.0.0.51 announced");
    child.readUntil("applied 10.0.0.51");

    EXPECT_TRUE(child.writeLine("site"));
    child.readUntil("site element WBTS, identifier 4711");
    child.readUntil("site addresses: public 10.0.0.51, transport 10.1.0.7, local management unknown");
    EXPECT_TRUE(sim.writeLine("announce \"\x1b[2J; rm\"")); // it goes through as it is and is shown harmless
    child.readUntil("applied \\x1b[2J; rm");
}

// A unit that was away has another address, which it announced to nobody.
TEST_F(AdapterProgram, AsksForWhatItMayHaveMissed)
{
    Unit sim = unit({"--address", "10.0.0.7"});
    ChildProcess child = adapter();
    child.readUntil("the agent is reached");
    sim.signal(SIGKILL);
    sim.waitForExit();
    Unit const again = unit({"--address", "10.0.0.8"});
    child.readUntil("applied 10.0.0.8");
}

TEST_F(AdapterProgram, GoesOnAfterAUnitThatHangsDiesAndComesBack)
{
    Unit sim = unit({"--do", "address 10.0.0.7"});
    ChildProcess child = adapter({"--timeout", "1000"});
    child.readUntil("the agent is reached");
    sim.does("hang");
    EXPECT_TRUE(child.writeLine("alarm 0,1"));
    EXPECT_EQ(sim.readLine(), "hanging in sendAlarmRmi");
    child.readUntil("alarm 0,1 failed: no reply within 1000 ms");
    EXPECT_TRUE(child.writeLine("alarm 1,1")); // one call that hangs keeps no other from its answer
    child.readUntil("alarm 1,1 delivered and accepted");

    sim.signal(SIGKILL);
    sim.waitForExit();
    EXPECT_TRUE(child.write("announce\nalarm 1,1\nreconnect\n"));
    child.readUntil("announce: ", ChildProcess::Stream::error);
    child.readUntil("alarm 1,1 was not sent: the agent cannot be reached");
    child.readUntil("the agent cannot be reached");

    Unit back = unit({"--address", "10.0.0.8"});
    EXPECT_TRUE(child.writeLine("alarm 1,0")); // the proxy reaches it again
    child.readUntil("alarm 1,0 delivered and accepted");
    EXPECT_TRUE(child.writeLine("reconnect")); // only a new wrapper asks for the address
    child.readUntil("applied 10.0.0.8");
    back.writeLine("announce 10.0.0.9");
    child.readUntil("applied 10.0.0.9");
    EXPECT_TRUE(child.writeLine("quit"));
    EXPECT_EQ(child.waitForExit(), 0);
}

} // namespace
