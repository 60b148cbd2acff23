// What a unit tells comes out of trsctl as it is: nothing is cut, and it is escaped only where a terminal shows it.
#include "catalogue/Value.h"
#include "tests/tools/Trsctl.h"
#include "tools/traffic/Conversation.h"

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using trs::catalogue::Value;

class TrsctlData : public TrsctlTest {
protected:
    TrsctlData() { EXPECT_EQ(output({"set", led, "ledName", one}), ""); }
    ~TrsctlData() override
    {
        std::filesystem::remove(path + ".one");
        std::filesystem::remove(path + ".pcapng");
    }

    static std::string shown(std::string const& last)
    {
        return std::string(119, 'x') + "\xc3\xa4\\xc2\\x9b2J\\x1b\\x0a\\x5c" + last;
    }
    // Another name of the LED, of which a process that has said its first line is told.
    void rename(ChildProcess& told)
    {
        EXPECT_TRUE(told.readLine(ChildProcess::Stream::error));
        EXPECT_EQ(output({"set", led, "ledName", other}), "");
    }
    ChildProcess start(std::string const& unit, Arguments arguments)
    {
        arguments.insert(arguments.begin(), {"--unit", unit});
        return ChildProcess(program("trsctl"), arguments);
    }

    std::string const led = "HwmLed:HwmUnit-1/Led";
    // Texts that are alike for as long as a line of a log goes, and where it ends; behind is what a terminal obeys.
    std::string const alike = std::string(119, 'x') + "\xc3\xa4\xc2\x9b"
                                                      "2J\x1b\n\\";
    std::string const one = alike + "one";
    std::string const other = alike + "other";
    Unit sim = unit({"--clock", "stepped"});
};

TEST_F(TrsctlData, IsReadWhole)
{
    EXPECT_EQ(output({"get", led, "ledName"}), "name " + shown("one") + '\n');
    EXPECT_THAT(output({"get", led, "ledName", "--format", "table"}), EndsWith("\nname  " + shown("one") + '\n'));
    EXPECT_THAT(output({"walk", led}), HasSubstr("getLedName.name " + shown("one") + '\n'));
    std::string const json = output({"get", led, "ledName", "--format", "json"});
    EXPECT_EQ(Value::parse(json), Value({{"name", one}}));
    EXPECT_EQ(json.find("\xc2\x9b"), std::string::npos) << "a terminal may show it";
    EXPECT_THAT(output({"describe", "IpNode.getIpConfig"}),
                HasSubstr(" the number of BTS_ID identifies the base station.\n"));
}

TEST_F(TrsctlData, IsComparedWhole)
{
    EXPECT_EQ(output({"snapshot", "-o", path + ".one"}), "");
    EXPECT_EQ(output({"diff", path + ".one", endpoint}), "");
    EXPECT_EQ(output({"set", led, "ledName", other}), "");
    Result const text = run({"diff", path + ".one", endpoint});
    EXPECT_EQ(text.code, 1);
    EXPECT_EQ(text.output, "~ " + led + " getLedName.name " + shown("one") + " -> " + shown("other") + '\n');
    Result const json = run({"diff", path + ".one", endpoint, "--format", "json"});
    EXPECT_EQ(Value::parse(json.output),
              Value({{"change", "changed"}, {"place", led + " getLedName.name"}, {"before", one}, {"after", other}}));

    EXPECT_EQ(run({"wait", led, "ledName", "--where", "name=" + one, "--for", "0.01"}).code, 5);
    EXPECT_EQ(output({"wait", led, "ledName", "--where", "name=" + other, "--for", "10"}),
              "name " + shown("other") + '\n');
    EXPECT_EQ(run({"wait", led, "ledName", "--where", "name=" + shown("other"), "--for", "0.01"}).code, 5);

    // JSON has no way to say bytes that are no UTF-8; a unit is all the same as its snapshot has it.
    EXPECT_EQ(output({"set", led, "ledName", "caf\xe9"}), "");
    EXPECT_EQ(output({"snapshot", "-o", path + ".one"}), "");
    EXPECT_EQ(output({"diff", path + ".one", endpoint}), "");
    EXPECT_EQ(output({"diff", endpoint, path + ".one"}), "");
}

TEST_F(TrsctlData, OfObjectsIsTheirNames)
{
    Value const scenario = {{"objects", {{"IpNode:IpNode", {{"getTransportIfNet", {{"ifNet", "EthIfNet:" + one}}}}}}}};
    EXPECT_EQ(output({"call", "Simulator", "applyScenario", "scenario=" + scenario.dump()}), "wrong \n");
    EXPECT_THAT(output({"tree"}), HasSubstr("\n  EthIfNet:" + shown("one") + "  (getTransportIfNet)\n"));
    EXPECT_EQ(output({"complete", "--", "get", "EthIfNet:x"}), "") << "what a terminal obeys";
    EXPECT_THAT(output({"complete", "--", "get", "EthIfNet:I"}), HasSubstr("EthIfNet:IfNet/Lmp\n"));
    Value const snapshot = Value::parse(output({"snapshot", "IpNode"}));
    EXPECT_TRUE(snapshot["objects"].contains("EthIfNet:" + one));
}

TEST_F(TrsctlData, IsShownWholeAsItPasses)
{
    ChildProcess watch = start(endpoint, {"watch", led, "setLedName", "--count", "1"});
    rename(watch);
    EXPECT_EQ(watch.waitForExit(), 0);
    EXPECT_THAT(watch.readRest(), ElementsAre(EndsWith(" name=" + shown("other"))));

    std::string const relayed = "unix:" + path + ".relay";
    ChildProcess trace = start(endpoint, {"trace", "--listen", relayed, "--for", "60"});
    EXPECT_TRUE(trace.readLine(ChildProcess::Stream::error));
    std::string const file = path + ".pcapng";
    ChildProcess capture = start(relayed, {"capture", "--listen", relayed + "2", "-w", file});
    EXPECT_TRUE(capture.readLine(ChildProcess::Stream::error));
    EXPECT_EQ(start(relayed + "2", {"set", led, "ledName", one}).waitForExit(), 0);
    for (ChildProcess* const each : {&capture, &trace}) {
        each->signal(SIGTERM);
        EXPECT_EQ(each->waitForExit(), 0);
    }
    std::string const request = "HwmLedClient.setLedName arguments.name=" + shown("one") + '\n';
    EXPECT_THAT(joined(trace.readRest()), HasSubstr(request));
    EXPECT_THAT(output({"decode", file}), HasSubstr(request));
}

TEST(Conversations, WhatIsNoMessageIsShownWhole)
{
    trs::traffic::Conversation conversation;
    std::string expected;
    for (int i = 0; i < 200; ++i) {
        expected += "78";
    }
    EXPECT_EQ(conversation.tell(std::string(200, 'x'), {}).value["bytes"], expected);
}

} // namespace
