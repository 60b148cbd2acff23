// What trsctl watch and wait say of notifications that may be missing.
#include "broker/CallFailure.h"
#include "catalogue/SimulatorClient.h"
#include "clients/ip/IpNodeClient.h"
#include "tests/tools/Trsctl.h"
#include "tools/trsctl/Feed.h"

#include <nlohmann/json.hpp>

namespace {

using testing::HasSubstr;
using Json = nlohmann::json;
using trs::catalogue::Value;
using trs::ctl::Feed;

TEST(WatchFeed, TellsInItsPlaceWhatItDropped)
{
    Feed feed("IpNode:IpNode", 2);
    auto const next = [&feed] { return feed.take(Feed::Clock::now()).value_or(Value()); };
    for (int number = 1; number <= 5; ++number) {
        feed.put({{"number", number}});
    }
    EXPECT_EQ(next()["number"], 1);
    feed.put({{"number", 6}});
    EXPECT_EQ(next()["number"], 2);
    Value const gap = next();
    ASSERT_TRUE(Feed::isGap(gap));
    EXPECT_EQ(gap["gap"]["dropped"], 3);
    EXPECT_EQ(gap["object"], "IpNode:IpNode");
    EXPECT_EQ(next()["number"], 6);
    for (int number = 7; number <= 9; ++number) {
        feed.put({{"number", number}});
    }
    next();
    next();
    EXPECT_EQ(next()["gap"]["dropped"], 1) << "at the end as well";
    EXPECT_TRUE(next().is_null());
}

class TrsctlGaps : public TrsctlTest {
protected:
    struct Watching : ChildProcess {
        Watching(std::string const& endpoint, Arguments arguments)
            : ChildProcess(program("trsctl"), with(endpoint, arguments))
        {
            EXPECT_THAT(readLine(Stream::error).value_or(""), testing::StartsWith("watching "));
        }
        static Arguments& with(std::string const& endpoint, Arguments& arguments)
        {
            arguments.insert(arguments.begin(), {"--unit", endpoint});
            return arguments;
        }
        void stop() const
        {
            signal(SIGSTOP);
            siginfo_t stopped{};
            ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(id()), &stopped, WSTOPPED | WNOWAIT), 0);
        }
    };

    Unit sim = unit({"--clock", "stepped"});
};

// A unit sends faster than a stopped watcher takes, until it sends it away.
TEST_F(TrsctlGaps, AWatcherThatWasStoppedSaysWhatItMayHaveMissed)
{
    Watching watch(endpoint, {"watch", "Simulator", "execute", "--format", "json"});
    watch.stop();
    peerAt(endpoint);
    SimulatorClient const simulator{TipprmiOID(SimulatorClient::SIMULATOR_OID)};
    std::string output;
    std::string wrong;
    constexpr int sent = 40;
    for (int count = 0; count < sent; ++count) {
        simulator.execute(std::string(100'000, 'x'), output, wrong);
    }
    watch.signal(SIGCONT);
    int shown = 0;
    Json event = Json::parse(watch.readLine().value_or(""), nullptr, false);
    for (; event.contains("operation"); event = Json::parse(watch.readLine().value_or(""), nullptr, false)) {
        ++shown;
    }
    EXPECT_LT(shown, sent);
    ASSERT_TRUE(event.contains("gap")) << event;
    EXPECT_FALSE(event["gap"].contains("until"));
    event = Json::parse(watch.readLine().value_or(""), nullptr, false);
    ASSERT_TRUE(event.contains("gap")) << event;
    EXPECT_EQ(event["gap"]["unit"], endpoint);
    EXPECT_EQ(event["object"], "Simulator:Simulator");
    EXPECT_LE(event["gap"]["since"], event["gap"]["lost"]);
    EXPECT_LE(event["gap"]["lost"], event["gap"]["until"]);

    simulator.execute("afterwards", output, wrong); // the gap is over, so it is seen
    EXPECT_THAT(watch.readLine().value_or(""), HasSubstr("afterwards"));
    watch.signal(SIGINT);
    EXPECT_EQ(watch.waitForExit(), 1);
    std::vector<std::string> const said = watch.readRest(ChildProcess::Stream::error);
    EXPECT_EQ(Json::parse(said.back(), nullptr, false)["error"],
              "Simulator:Simulator: notifications may be missing: 1 gap, the first since " +
                  event["gap"]["since"].get<std::string>());
}

TEST_F(TrsctlGaps, AUnitThatWasAwayIsAGap)
{
    Watching watch(endpoint, {"watch", "NmiRmiAdapterServer", "notifyPublicIpAddrChangeRmi", "--count", "1"});
    Watching wait(endpoint, {"wait", "NmiRmiAdapterServer", "notifyPublicIpAddrChangeRmi"});
    sim.signal(SIGKILL);
    sim.waitForExit();
    Unit again = unit();
    for (Watching* const each : {&watch, &wait}) {
        EXPECT_THAT(each->readUntil(":NmiRmiAdapterServer gap since="), HasSubstr(" lost="));
        EXPECT_THAT(each->readUntil(" gap since="), HasSubstr(" until="));
    }
    again.does("announce 10.0.0.9"); // the subscriptions are renewed
    watch.readUntil("notifyPublicIpAddrChangeRmi");
    EXPECT_EQ(watch.waitForExit(), 1);
    EXPECT_EQ(wait.waitForExit(), 0) << "what it waited for has come";
    EXPECT_THAT(joined(wait.readRest(ChildProcess::Stream::error)), HasSubstr("may be missing: 1 gap"));

    Watching last(endpoint, {"watch", "IpNode", "setMtu"});
    again.signal(SIGKILL);
    again.waitForExit();
    EXPECT_THAT(last.readUntil(" gap since="), testing::Not(HasSubstr("until")));
    last.signal(SIGINT);
    EXPECT_EQ(last.waitForExit(), 1) << "the gap is not over";
}

} // namespace
