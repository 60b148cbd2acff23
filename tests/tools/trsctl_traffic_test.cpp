// trsctl trace, capture, decode and stats: what passes between a management process and a unit.
#include "catalogue/Value.h"
#include "tests/tools/Trsctl.h"
#include "tools/traffic/Conversation.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using trs::catalogue::Value;

class TrsctlTraffic : public TrsctlTest {
protected:
    ~TrsctlTraffic() override { std::filesystem::remove(file); }

    // A trsctl between the test's unit and those who connect to `relayed`.
    struct Between : ChildProcess {
        explicit Between(Arguments const& arguments) : ChildProcess(program("trsctl"), arguments)
        {
            EXPECT_THAT(readLine(Stream::error).value_or(""), testing::StartsWith("relaying "));
        }
    };
    Between between(Arguments arguments)
    {
        arguments.insert(arguments.begin(), {"--unit", endpoint});
        arguments.insert(arguments.end(), {"--listen", relayed});
        return Between(arguments);
    }
    // A call that takes the way through it.
    static int call(std::string const& through, Arguments arguments)
    {
        arguments.insert(arguments.begin(), {"--unit", through});
        ChildProcess child(program("trsctl"), arguments);
        return child.waitForExit();
    }
    void callAll() const
    {
        EXPECT_EQ(call(relayed, {"set", "IpNode", "mtu", "1400"}), 0);
        EXPECT_EQ(call(relayed, {"get", "IpNode", "mtu"}), 0);
        EXPECT_EQ(call(relayed, {"get", "IpNode", "ipConfig", "nothing"}), 4);
        EXPECT_EQ(call(relayed, {"get", "IfNet:Nobody", "mtu"}), 3);
    }
    static std::vector<Value> parsed(std::vector<std::string> const& lines)
    {
        std::vector<Value> values;
        values.reserve(lines.size());
        for (std::string const& line : lines) {
            values.push_back(Value::parse(line, nullptr, false));
        }
        return values;
    }
    static std::vector<Value> ofKind(std::vector<Value> const& messages, char const* kind)
    {
        std::vector<Value> found;
        std::copy_if(messages.begin(), messages.end(), std::back_inserter(found),
                     [kind](Value const& each) { return each["kind"] == kind; });
        return found;
    }

    // What tshark shows of each packet: the fields, separated by |.
    std::vector<std::string> dissect(std::string const& capture, std::vector<std::string> const& fields)
    {
        std::ofstream(file + ".lua") << output({"dissector"});
        Arguments arguments{"-X", "lua_script:" + file + ".lua", "-r", capture, "-T", "fields", "-E", "separator=|"};
        for (std::string const& field : fields) {
            arguments.insert(arguments.end(), {"-e", "trsman." + field});
        }
        ChildProcess tshark("/usr/bin/tshark", arguments);
        EXPECT_EQ(tshark.waitForExit(), 0);
        std::filesystem::remove(file + ".lua");
        return tshark.readRest();
    }

    std::string const relayed = "unix:" + path + ".relay";
    std::string const file = path + ".pcapng";
    Unit sim = unit({"--clock", "stepped"});
};

TEST(Cutter, CutsTheSamePartsHoweverTheirBytesCome)
{
    using namespace std::string_literals;
    std::string const greeting = "TOIP\0\1\0\0"s;
    std::string const refusal = "TOIP\0\1\0\2\0\0\0\4full"s;
    std::string const message = "\0\0\0\x8\6\0\0\0\0\0\0\1"s;
    std::string const damage = "\0\0\0\1"s;
    for (std::vector<std::string> const& parts :
         {std::vector{greeting, message, message, damage}, {greeting, message.substr(0, 11)}, {refusal}, {"TOI"s}}) {
        std::string all;
        for (std::string const& part : parts) {
            all += part;
        }
        for (std::size_t step = 1; step <= all.size(); ++step) {
            trs::traffic::Cutter cutter;
            std::vector<std::string> cut;
            for (std::size_t at = 0; at < all.size(); at += step) {
                cutter.add(std::string_view(all).substr(at, step));
                while (std::optional<std::string> part = cutter.next()) {
                    cut.push_back(std::move(*part));
                }
            }
            if (std::string rest = cutter.rest(); !rest.empty()) {
                cut.push_back(std::move(rest));
            }
            EXPECT_EQ(cut, parts) << step;
        }
    }
}

TEST_F(TrsctlTraffic, TracesWhatPasses)
{
    Between trace = between({"trace", "--format", "json"});
    callAll();
    EXPECT_EQ(call(relayed, {"set", "IpNode", "transportMode", "TRANSPORT_MODE_DUALIUB"}), 0);
    trace.signal(SIGTERM);
    EXPECT_EQ(trace.waitForExit(), 0);
    std::vector<Value> const messages = parsed(trace.readRest());
    EXPECT_EQ(ofKind(messages, "greeting").size(), 10U) << "two for each connection";
    std::vector<Value> const requests = ofKind(messages, "request");
    ASSERT_EQ(requests.size(), 5U);
    EXPECT_EQ(requests[0]["object"], "IpNode");
    EXPECT_EQ(requests[0]["operation"], "IpNodeClient.setMtu");
    EXPECT_EQ(requests[0]["arguments"], Value({{"mtu", 1400}}));
    EXPECT_EQ(requests[0]["direction"], "to unit");
    EXPECT_NE(requests[0]["connection"], requests[1]["connection"]);
    EXPECT_EQ(requests[4]["arguments"]["mode"], "TRANSPORT_MODE_DUALIUB");
    std::vector<Value> const replies = ofKind(messages, "reply");
    ASSERT_EQ(replies.size(), 5U);
    EXPECT_EQ(replies[1]["results"], Value({{"mtu", 1400}}));
    EXPECT_EQ(replies[1]["operation"], "IpNodeClient.getMtu");
    EXPECT_TRUE(replies[1]["microseconds"].is_number());
    EXPECT_EQ(replies[2]["status"], "refused");
    EXPECT_EQ(replies[3]["status"], "no such object");
}

// What is damaged is passed on, and shown as it is.
TEST_F(TrsctlTraffic, ShowsDamageAndPassesItOn)
{
    Between trace = between({"trace", "--format", "json"});
    sim.does("fault cut operation=IpNode.getMtu count=1");
    EXPECT_EQ(call(relayed, {"get", "IpNode", "mtu"}), 7);
    sim.does("fault close operation=IpNode.getMtu count=1");
    EXPECT_EQ(call(relayed, {"get", "IpNode", "mtu"}), 6);
    support::Descriptor const stranger = support::connectTo(path + ".relay");
    stranger.write({'n', 'o', 'n', 's', 'e', 'n', 's', 'e', 0xff, 0xff, 0xff, 0xff});
    EXPECT_TRUE(stranger.read(100).empty()) << "the unit hangs up on a stranger, and so does who stands between";
    trace.signal(SIGTERM);
    EXPECT_EQ(trace.waitForExit(), 0);
    std::vector<Value> const messages = parsed(trace.readRest());
    EXPECT_EQ(ofKind(messages, "reply").at(0)["wrong"], "it ends too early");
    std::vector<Value> malformed = ofKind(messages, "malformed");
    ASSERT_EQ(malformed.size(), 2U) << "an answer that ends with its connection; what the stranger says";
    // The two connections are carried beside each other, so that either may be told first.
    std::sort(malformed.begin(), malformed.end(), [](Value const& left, Value const& right) {
        return left["connection"].get<int>() < right["connection"].get<int>();
    });
    EXPECT_EQ(malformed[0]["direction"], "from unit");
    EXPECT_EQ(malformed[0]["connection"], 2);
    EXPECT_THAT(malformed[1]["bytes"].get<std::string>(), testing::StartsWith("6e6f6e73"));
}

TEST_F(TrsctlTraffic, TellsEverybodyOfAUnitThatIsNotReached)
{
    std::string const nobody = "unix:" + path + ".nobody";
    for (std::string const& listen : {relayed, std::string("tcp:0")}) {
        ChildProcess trace(program("trsctl"), {"--unit", nobody, "trace", "--listen", listen, "--format", "json"});
        std::string const line = trace.readLine(ChildProcess::Stream::error).value_or("");
        ASSERT_THAT(line, testing::MatchesRegex("relaying .* to " + nobody));
        std::string const why = "the relay cannot reach " + nobody + ": No such file or directory";
        ChildProcess client(program("trsctl"),
                            {"--unit", line.substr(9, line.find(' ', 9) - 9), "get", "IpNode", "mtu"});
        EXPECT_EQ(client.waitForExit(), 6);
        EXPECT_THAT(client.readLine(ChildProcess::Stream::error), testing::Optional(HasSubstr(": " + why + "; ")));
        EXPECT_THAT(trace.readLine(ChildProcess::Stream::error),
                    testing::Optional(HasSubstr("{\"error\":\"" + why + "\",\"kind\":\"notConnected\"")));
        Value const refusal = Value::parse(trace.readUntil("from unit"), nullptr, false);
        EXPECT_EQ(refusal["kind"], "greeting");
        EXPECT_EQ(refusal["status"], "refused");
        EXPECT_EQ(refusal["reason"], why);
        trace.signal(SIGTERM);
        EXPECT_EQ(trace.waitForExit(), 0);
    }
}

TEST_F(TrsctlTraffic, CapturesForLater)
{
    Between capture = between({"capture", "-w", file});
    callAll();
    capture.signal(SIGTERM);
    EXPECT_EQ(capture.waitForExit(), 0);

    std::vector<Value> const messages = parsed({[&] {
        std::vector<std::string> lines;
        std::istringstream text(output({"decode", file, "--format", "json"}));
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }()});
    EXPECT_EQ(messages.size(), 16U);
    EXPECT_EQ(ofKind(messages, "reply").at(1)["results"], Value({{"mtu", 1400}}));
    EXPECT_THAT(output({"decode", file}),
                HasSubstr("request number=1 IpNode IpNodeClient.setMtu arguments.mtu=1400\n"));
    Value const counted = Value::parse(output({"stats", file, "--format", "json"}), nullptr, false);
    ASSERT_EQ(counted.size(), 4U);
    EXPECT_EQ(counted[0]["operation"], "IfNetClient.getMtu");
    EXPECT_EQ(counted[0]["errors"], 1);
    EXPECT_EQ(counted[3]["operation"], "IpNodeClient.setMtu");
    EXPECT_EQ(counted[3]["calls"], 1);
    EXPECT_EQ(counted[3]["bytesFromUnit"], 20);

    // A capture that is cut shows what is whole, and says so.
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 3);
    Result const cut = run({"decode", file, "--format", "json"});
    EXPECT_EQ(cut.code, 2);
    EXPECT_EQ(std::count(cut.output.begin(), cut.output.end(), '\n'), 15);
    EXPECT_THAT(cut.error, HasSubstr("ends in the middle of a block"));
    std::ofstream(file) << "no capture at all";
    EXPECT_THAT(run({"decode", file}).error, HasSubstr("this is no capture file"));
    std::ofstream(file, std::ios::trunc);
    EXPECT_THAT(run({"stats", file}).error, HasSubstr("this is no capture file"));
    EXPECT_EQ(run({"decode", "/nowhere"}).code, 2);
    EXPECT_EQ(run({"stats"}).code, 2);
}

// The dissector has packet analysers show what trsctl shows.
TEST_F(TrsctlTraffic, IsDissected)
{
    Between capture = between({"capture", "-w", file});
    callAll();
    sim.does("fault cut operation=IpNode.getMtu count=1");
    EXPECT_EQ(call(relayed, {"get", "IpNode", "mtu"}), 7);
    EXPECT_EQ(call(relayed, {"set", "IpNode", "ipForwardingSequence", "[]"}), 2);
    EXPECT_EQ(call(relayed, {"get", "EthIfNet:IfNet/Transport", "ipAddrSequence"}), 0);
    capture.signal(SIGTERM);
    EXPECT_EQ(capture.waitForExit(), 0);
    std::vector<std::string> const shown = dissect(file, {"kind", "object", "operation", "status", "value", "wrong"});
    EXPECT_THAT(shown, Contains("request|IpNode|IpNodeClient.setMtu||arguments.mtu=1400|"));
    EXPECT_THAT(shown, Contains("reply|IpNode|IpNodeClient.getMtu|done|result=done,results.mtu=1400|"));
    EXPECT_THAT(shown, Contains(testing::StartsWith("reply|IpNode|IpNodeClient.getIpConfig|refused|result=refused,")));
    EXPECT_THAT(shown, Contains("reply|Nobody|IfNetClient.getMtu|no such object||"));
    EXPECT_THAT(shown, Contains(AllOf(HasSubstr("getIpAddrSequence|done"),
                                      HasSubstr("results.addresses[0].ipAddress=10.1.0.7,"))));
    EXPECT_EQ(std::count_if(shown.begin(), shown.end(), [](auto const& each) { return !each.ends_with('|'); }), 1);
    EXPECT_THAT(shown, Contains(AllOf(HasSubstr("getMtu|done"), HasSubstr("|it ends too early"))));

    std::string const nobody = "unix:" + path + ".nobody";
    Between refusing({"--unit", nobody, "capture", "-w", file, "--listen", relayed});
    EXPECT_EQ(call(relayed, {"get", "IpNode", "mtu"}), 6);
    refusing.signal(SIGTERM);
    EXPECT_EQ(refusing.waitForExit(), 0);
    EXPECT_THAT(dissect(file, {"kind", "status", "reason"}),
                Contains("greeting|refused|the relay cannot reach " + nobody + ": No such file or directory"));
}

// Names that are missing would show only when a packet comes that needs them.
TEST_F(TrsctlTraffic, IsDissectedByLuaThatHasWhatItNames)
{
    auto const compiled = [](Arguments const& arguments) {
        ChildProcess compiler("/usr/bin/luac5.2", arguments);
        EXPECT_EQ(compiler.waitForExit(), 0) << joined(compiler.readRest(ChildProcess::Stream::error));
        return compiler.readRest();
    };
    std::string const text = output({"dissector"});
    std::ofstream(file) << text;
    compiled({"-p", file});
    std::set<std::string> const known{"DESEGMENT_ONE_MORE_SEGMENT",
                                      "DissectorTable",
                                      "PI_ERROR",
                                      "PI_MALFORMED",
                                      "Proto",
                                      "ProtoField",
                                      "error",
                                      "ipairs",
                                      "math",
                                      "pcall",
                                      "setmetatable",
                                      "string",
                                      "table",
                                      "tostring"};
    std::set<std::string> made;
    for (std::string const& line : compiled({"-l", "-p", source("tools/traffic/dissector.lua")})) {
        std::string const global = "; _ENV \"";
        std::size_t const at = line.find(global);
        std::string const name = at == std::string::npos ? "" : line.substr(at + global.size());
        if (!name.empty() && !known.contains(name.substr(0, name.find('"')))) {
            made.insert(name.substr(0, name.find('"')));
        }
    }
    EXPECT_THAT(made, testing::ElementsAre("kinds", "operations", "statuses", "types", "wire"));
    for (std::string const& name : made) {
        EXPECT_THAT(text, HasSubstr("local " + name + " = {")) << "the program makes it";
    }
}

TEST_F(TrsctlTraffic, IsDissectedInSegments)
{
    auto const make = [this](char const* segments) {
        std::ofstream(file + ".text") << segments;
        ChildProcess made("/usr/bin/text2pcap", {"-q", "-D", "-T", "50000,4000", file + ".text", file});
        EXPECT_EQ(made.waitForExit(), 0) << joined(made.readRest(ChildProcess::Stream::error));
        std::filesystem::remove(file + ".text");
    };
    make("O\n0000 54 4f 49 50 00 01 00 00\n"
         "I\n0000 54 4f 49 50 00 01 00 02 00 00 00 04 62 75\n" // in the middle of a reason
         "I\n0000 73 79\n");
    EXPECT_THAT(dissect(file, {"kind", "status", "reason"}),
                testing::ElementsAre("greeting||", "||", "greeting|refused|busy"));
    make("O\n0000 54 4f 49 50 00 01 00 00\n"
         "I\n0000 54 4f 49 50 00 01 00 00\n"
         "O\n0000 00 00 00 1e 01 00\n" // in the middle of a request
         "O\n0000 00 00 00 00 00 07 a1 b2 c3 d4 00 00 00 05 00 00 00 01 00 00 00 06 49 70\n"
         "0018 4e 6f 64 65 00 00 00 08 03 00 00 00 00 00 00 08\n"); // and another message
    EXPECT_THAT(dissect(file, {"kind", "object", "operation", "number"}),
                testing::ElementsAre("greeting|||", "greeting|||", "|||", "request,locate|IpNode|0xa1b2c3d4.5|7,8"));
}

} // namespace
