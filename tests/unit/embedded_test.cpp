// A simulated unit in the test's own process: calls meet the faults, and are logged, as over a connection.
#include "broker/Broker.h"
#include "broker/CallFailure.h"
#include "broker/Deadline.h"
#include "catalogue/Value.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/services/ConditionClient.h"
#include "rmi/TreflectHandlerState.h"
#include "tests/support/Sockets.h"
#include "unit/Scenario.h"
#include "unit/Unit.h"

#include <fstream>
#include <gmock/gmock.h>

namespace {

using trs::CallFailure;
using trs::lastCallFailure;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

class EmbeddedUnit : public support::BrokerTest {
protected:
    void inject(std::string const& kind, std::string const& operation, unsigned long count = 1, unsigned long delay = 0)
    {
        unsigned long number = 0;
        ASSERT_EQ(unit.misbehaviours().inject({kind, operation, "", 1, count, 0, delay}, number), "");
    }

    trs::sim::Unit unit{{"10.0.0.7", 2, false}};
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID)};
    ConditionClient const condition{TipprmiOID("AppObject-1/Condition/los")};
};

// Also a call that goes to a skeleton's function directly while nothing is tapped.
TEST_F(EmbeddedUnit, AnswersCallsOfItsProcessBadly)
{
    using Kind = CallFailure::Kind;
    struct {
        char const* kind;
        Kind failure;
        milliseconds least;
        bool isExecuted;
    } const cases[] = {
        {"refuse", Kind::none, milliseconds(0), false},         {"delay", Kind::none, milliseconds(30), true},
        {"late", Kind::none, milliseconds(30), true},           {"drop", Kind::deadline, milliseconds(80), true},
        {"twice", Kind::none, milliseconds(0), true},           {"cut", Kind::malformedReply, milliseconds(0), true},
        {"close", Kind::connectionLost, milliseconds(0), true}, {"lie", Kind::deadline, milliseconds(80), true},
        {"trickle", Kind::none, milliseconds(10), true},
    };
    for (auto const& [kind, failure, least, isExecuted] : cases) {
        SCOPED_TRACE(kind);
        trs::Broker::setDeadline(failure == Kind::deadline ? milliseconds(100) : support::patience);
        condition.cancel();
        ASSERT_FALSE(condition.isActive());
        inject(kind, "Condition.raise", 1, 30);
        auto const begin = Clock::now();
        bool const isDone = condition.raise() == RunClient::OK;
        EXPECT_EQ(lastCallFailure().kind, failure) << lastCallFailure().text();
        EXPECT_EQ(lastCallFailure().peer, "") << "it is this process";
        EXPECT_GE(Clock::now() - begin, least);
        EXPECT_EQ(isDone, failure == Kind::none && isExecuted);
        EXPECT_EQ(condition.isActive(), isExecuted);
        unit.misbehaviours().withdraw(0);
    }
    EXPECT_TRUE(node.setMtu(1400) == SetClient::OK) << "calls go on";
}

TEST_F(EmbeddedUnit, DamagesBytesAndKeepsTheCallersTime)
{
    trs::Broker::setDeadline(milliseconds(100));
    inject("flip", "IpNode", 0);
    int damaged = 0;
    for (int call = 0; call < 30; ++call) {
        long mtu = 0;
        damaged += node.getMtu(mtu) == GetClient::OK && mtu == 1500 ? 0 : 1;
    }
    EXPECT_GT(damaged, 10) << "a bit may be one that does not matter";
    unit.misbehaviours().withdraw(0);

    inject("late", "IpNode.setMtu", 1, 60000);
    auto const begin = Clock::now();
    EXPECT_FALSE(node.setMtu(1400) == SetClient::OK);
    EXPECT_LT(Clock::now() - begin, support::patience) << "it is given up at the deadline";
    EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::unknown);
    trs::Broker::setDeadline(support::patience);
    long mtu = 0;
    EXPECT_TRUE(node.getMtu(mtu) == GetClient::OK && mtu == 1400);
}

TEST_F(EmbeddedUnit, LogsCallsOfItsProcessButNotItsOwn)
{
    std::string const log = directory.file("calls");
    ASSERT_EQ(unit.logCalls(log), "");
    inject("refuse", "", 0);
    {
        TreflectHandlerState const running;
        EXPECT_EQ(trs::sim::scenario::save(unit)["objects"]["IpNode:IpNode"]["getMtu"]["mtu"], 1500);
    }
    EXPECT_FALSE(node.setMtu(1300) == SetClient::OK);
    unit.misbehaviours().withdraw(0);
    condition.raise();
    std::ifstream file(log);
    std::vector<trs::catalogue::Value> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(trs::catalogue::Value::parse(line, nullptr, false));
    }
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0]["operation"], "IpNodeClient.setMtu");
    EXPECT_EQ(lines[0]["fault"], "refuse");
    EXPECT_EQ(lines[1]["operation"], "ConditionClient.raise");
    EXPECT_EQ(unit.callCount(), 2U);
}

} // namespace
