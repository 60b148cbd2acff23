// The link to the network management agent: its proxy, the checks before every call, and what follows the address.
#include "adapter/ZynNmaWrapper.h"
#include "broker/Log.h"
#include "broker/UnitValues.h"
#include "rmi/Servant.h"
#include "tests/support/GoldenRecord.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <optional>

namespace {

using Alarm = NmiRmiAdapterClient::AlarmInfo;
using Lines = std::vector<std::pair<int, std::string>>;

Lines linesOf(trs::LogCapture const& capture)
{
    Lines lines;
    for (trs::LogEntry const& entry : capture.entries()) {
        lines.emplace_back(entry.severity, entry.text);
    }
    return lines;
}

// An agent in this process.
struct Agent {
    Agent()
    {
        trs::UnitValues::instance().reset();
        servant.on<&NmiRmiAdapterClient::getPublicIpAddrRmi>([this] { return address; })
            .on<&NmiRmiAdapterClient::notifyPublicIpAddrChangeRmi>([this] { ++announcements; })
            .on<&NmiRmiAdapterClient::sendAlarmRmi>([this](Alarm const& alarm) {
                alarms.push_back(wireForm(alarm));
                return answer;
            });
    }
    ~Agent() { trs::UnitValues::instance().reset(); }

    std::string address = "10.0.0.1";
    int announcements = 0;
    std::vector<std::string> alarms;
    bool answer = true;
    Servant servant{TipprmiOID("NmiRmiAdapterServer")};
};

TEST(NmiRmiAdapter, isTheCataloguesClass)
{
    golden::expectListed<NmiRmiAdapterClient>();
    golden::expectEveryBodyCallsItsOperation<NmiRmiAdapterClient>();
}

TEST(NmiRmiAdapter, sendsAnAlarmAsTypeAndState)
{
    Recorder agent;
    agent.reply = "00 00 00 01";
    Alarm const alarm{NmiRmiAdapterClient::ALARM_TYPE_1, NmiRmiAdapterClient::ALARM_STATE_2};
    EXPECT_TRUE(NmiRmiAdapterClient(&agent).sendAlarmRmi(alarm));
    EXPECT_THAT(agent.calls, testing::ElementsAre(Recorder::Call{0x411f174a, 2, "00 00 00 01 00 00 00 02"}));
    EXPECT_EQ(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME, "NmiRmiAdapterServer");
}

TEST(NmiRmiInterface, returnsDefaultsAndSaysWhyWhenTheAgentIsAway)
{
    trs::LogCapture capture;
    {
        NmiRmiInterface link;
        EXPECT_EQ(linesOf(capture), (Lines{{6, "Initialized NMI RMI Adapter client [NmiRmiAdapterServer]."}}));
        struct {
            std::function<bool()> isDefault;
            int severity;
        } const cases[] = {{[&] { return link.getPublicIpAddr().empty(); }, 4},
                           {[&] { return link.getNmiRmiAdapterClient() == nullptr; }, 4},
                           {[&] { return link.notifyPublicIpAddrChange(), true; }, 4},
                           {[&] { return !link.sendAlarm({}); }, 6}};
        for (auto const& [isDefault, severity] : cases) {
            capture.clear();
            EXPECT_TRUE(isDefault());
            EXPECT_EQ(linesOf(capture), (Lines{{severity, "NmiRmiAdapterClient is not connected."}}));
        }
        capture.clear();
    }
    EXPECT_EQ(linesOf(capture), (Lines{{6, "NmiRmiInterface destructor."}}));
}

TEST(NmiRmiInterface, findsAnAgentThatComesLater)
{
    NmiRmiInterface link;
    EXPECT_EQ(link.getPublicIpAddr(), "");
    Agent agent;
    EXPECT_EQ(link.getPublicIpAddr(), "10.0.0.1");
    EXPECT_NE(link.getNmiRmiAdapterClient(), nullptr);
    link.notifyPublicIpAddrChange();
    EXPECT_EQ(agent.announcements, 1);
}

TEST(ZynNmaWrapper, translatesExactlyTheValidAlarms)
{
    ZynNmaWrapper wrapper;
    trs::LogCapture capture;
    for (int const type : {-1, 0, 1, 2}) {
        for (int const state : {-1, 0, 1, 2, 3}) {
            capture.clear();
            Lines expected;
            Alarm to{static_cast<NmiRmiAdapterClient::AlarmType>(77), static_cast<NmiRmiAdapterClient::AlarmState>(77)};
            bool const typeIsValid = type == 0 || type == 1;
            bool const stateIsValid = state == 0 || state == 1 || state == 2;
            if (!typeIsValid) {
                expected.emplace_back(6, "Invalid alarm type[" + std::to_string(type) + "].");
            }
            if (!stateIsValid) {
                expected.emplace_back(6, "Invalid alarm state[" + std::to_string(state) + "].");
            }
            EXPECT_EQ(wrapper.zynToNmaAlarmInfo({type, state}, to), typeIsValid && stateIsValid);
            EXPECT_EQ(static_cast<int>(to.type), typeIsValid ? type : 77);
            EXPECT_EQ(static_cast<int>(to.state), stateIsValid ? state : 77);
            EXPECT_EQ(linesOf(capture), expected) << type << ' ' << state;
        }
    }
}

TEST(ZynNmaWrapper, sendsOnlyValidAlarmsAndReturnsTheAgentsAnswer)
{
    Agent agent;
    ZynNmaWrapper wrapper;
    EXPECT_TRUE(wrapper.sendAlarm({1, 2}));
    agent.answer = false;
    EXPECT_FALSE(wrapper.sendAlarm({0, 0}));
    trs::LogCapture const capture;
    EXPECT_FALSE(wrapper.sendAlarm({2, 3}));
    EXPECT_EQ(linesOf(capture),
              (Lines{{6, "Invalid alarm type[2]."}, {6, "Invalid alarm state[3]."}, {6, "zynToNmaAlarmInfo failed."}}));
    EXPECT_THAT(agent.alarms, testing::ElementsAre("00 00 00 01 00 00 00 02", "00 00 00 00 00 00 00 00"));
}

TEST(ZynNmaWrapper, tellsHowManyAlarmsFailedAndWhyTheLast)
{
    using Failure = ZynNmaWrapper::AlarmFailure;
    std::optional<Agent> agent(std::in_place);
    ZynNmaWrapper wrapper;
    EXPECT_TRUE(wrapper.followsAddress());
    EXPECT_TRUE(wrapper.isAgentConnected());
    EXPECT_TRUE(wrapper.sendAlarm({1, 2}));
    EXPECT_EQ(wrapper.failedAlarms(), 0U);
    EXPECT_EQ(wrapper.lastAlarmFailure(), Failure::none);

    agent->answer = false;
    wrapper.sendAlarm({0, 0});
    EXPECT_EQ(wrapper.lastAlarmFailure(), Failure::notAccepted);
    wrapper.sendAlarm({0, 3});
    EXPECT_EQ(wrapper.lastAlarmFailure(), Failure::invalid);
    agent.reset();
    EXPECT_FALSE(wrapper.isAgentConnected());
    wrapper.sendAlarm({0, 0});
    EXPECT_EQ(wrapper.lastAlarmFailure(), Failure::notConnected);
    EXPECT_EQ(wrapper.failedAlarms(), 3U);
    EXPECT_FALSE(ZynNmaWrapper().followsAddress());
}

TEST(ZynNmaWrapper, setsTheMaskEvenWithoutAnAgent)
{
    trs::UnitValues::instance().reset();
    trs::LogCapture const capture;
    ZynNmaWrapper wrapper;
    EXPECT_TRUE(capture.contains("NmiRmiAdapterClient is not connected."));
    EXPECT_EQ(linesOf(capture).back(), (std::pair{6, std::string("setTrsPrivIpAddrMask.")}));
    EXPECT_TRUE(trs::UnitValues::instance().isPrivateMaskSet());
    EXPECT_EQ(trs::UnitValues::instance().publicAddress(), "");
    EXPECT_FALSE(wrapper.sendAlarm({1, 1}));
    trs::UnitValues::instance().reset();
}

TEST(ZynNmaWrapper, appliesTheAddressAndFollowsItsChanges)
{
    Agent agent;
    ZynNmaWrapper wrapper;
    EXPECT_EQ(trs::UnitValues::instance().publicAddress(), "10.0.0.1");
    EXPECT_TRUE(trs::UnitValues::instance().isPrivateMaskSet());

    std::promise<std::string> applied;
    trs::UnitValues::instance().setListener([&applied](std::string const& what) { applied.set_value(what); });
    NmiRmiAdapterClient const announcer(TipprmiOID("NmiRmiAdapterServer"));
    {
        TreflectHandlerState const running;
        agent.address = "10.0.0.2";
        announcer.notifyPublicIpAddrChangeRmi();
    }
    auto future = applied.get_future();
    ASSERT_EQ(future.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(trs::UnitValues::instance().publicAddress(), "10.0.0.2");
    trs::UnitValues::instance().setListener(nullptr);
}

TEST(ZynNmaWrapper, ignoresAnEmptyAddress)
{
    Agent agent;
    agent.address = "";
    trs::LogCapture const capture;
    ZynNmaWrapper wrapper;
    EXPECT_TRUE(capture.contains("Public ip addr not set."));
    wrapper.setPublicIpAddr("10.0.0.3");
    wrapper.setPublicIpAddr("");
    EXPECT_EQ(trs::UnitValues::instance().publicAddress(), "10.0.0.3");
}

TEST(ZynNmaWrapper, isNoLongerToldOnceItIsGone)
{
    Agent agent;
    std::optional<ZynNmaWrapper> wrapper(std::in_place);
    EXPECT_TRUE(agent.servant.isObserved());
    wrapper.reset();
    EXPECT_FALSE(agent.servant.isObserved());
}

} // namespace
