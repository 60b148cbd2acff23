// A tap on the calls that a process makes to objects of its own.
#include "broker/CallFailure.h"
#include "broker/ServerTap.h"
#include "broker/framework/QelOperations.h"
#include "clients/services/AdminStatePolicySkeleton.h"
#include "platform/TreflectObserver.h"
#include "rmi/Servant.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"
#include "tests/support/Sockets.h"

#include <atomic>
#include <condition_variable>

namespace {

using trs::CallFailure;
using trs::lastCallFailure;

// A policy that is called by a virtual function while nothing stands in between.
class OwnPolicy final : public AdminStatePolicySkeleton {
public:
    explicit OwnPolicy(TipprmiOID const& oid) : AdminStatePolicySkeleton(oid) { activate(); }
    bool getState() override
    {
        isOnCallersThread = std::this_thread::get_id() == caller;
        return whenAsked ? whenAsked() : true;
    }
    void notifyStateChange() override {}

    std::thread::id const caller = std::this_thread::get_id();
    bool isOnCallersThread = false;
    std::function<bool()> whenAsked;
};

// Counts the calls, and refuses them when it is to.
class Tap final : public trs::ServerTap {
public:
    std::unique_ptr<trs::TappedCall> begin(trs::ObjectAddress const&, TipprmiStream const&) override
    {
        ++count;
        class Call : public trs::TappedCall {
        public:
            explicit Call(bool isRefused) : isRefused_(isRefused) {}
            bool isExecuted(TipprmiStream&, trs::ReplyStatus& status) override
            {
                status = trs::ReplyStatus::unreadableRequest;
                return !isRefused_;
            }
            bool answer(TipprmiStream const& reply, Send const& send) override
            {
                return send(reply.data(), reply.size());
            }

        private:
            bool const isRefused_;
        };
        return std::make_unique<Call>(isRefusing);
    }

    std::atomic<int> count = 0;
    std::atomic<bool> isRefusing = false;
};

class TappedCalls : public support::BrokerTest {
protected:
    ~TappedCalls() override { broker.setLocalTap(nullptr); }

    trs::Broker& broker = trs::Broker::instance();
    Tap tap;
    OwnPolicy policy{TipprmiOID("Policy")};
    AdminStatePolicyClient const byIdentifier{TipprmiOID("Policy")};
};

TEST_F(TappedCalls, AreSeenFromThenOnUntilTheTapIsGone)
{
    EXPECT_TRUE(byIdentifier.getState());
    EXPECT_TRUE(policy.isOnCallersThread);
    ASSERT_EQ(broker.setLocalTap(&tap), "");
    EXPECT_EQ(broker.setLocalTap(&tap), "") << "it is so already";
    Tap other;
    EXPECT_NE(broker.setLocalTap(&other), "");

    EXPECT_TRUE(byIdentifier.getState());
    EXPECT_EQ(tap.count, 1);
    OwnPolicy late{TipprmiOID("Late")}; // which becomes reachable while there is a tap
    EXPECT_TRUE(AdminStatePolicyClient(TipprmiOID("Late")).getState());
    Servant servant{"Servant"};
    servant.on<&QelLongClient::get>([] { return 5L; });
    QelLongClient const remoteOnly{TipprmiOID("Servant")};
    EXPECT_EQ(remoteOnly.get(), 5);
    TipprmiStream request(100);
    TipprmiStream reply(100);
    constexpr unsigned long classId = Operations<QelLongClient>::classId;
    remoteOnly.prepareRequestStream_(true, classId, 0, request);
    EXPECT_TRUE(remoteOnly.dispatch(true, classId, 0, request, reply));
    remoteOnly.prepareRequestStream_(true, classId, 0, request);
    EXPECT_TRUE(remoteOnly.forwardMsg(TreflectOrbId(0), true, request, reply));
    EXPECT_EQ(tap.count, 5);
    tap.isRefusing = true;
    EXPECT_FALSE(byIdentifier.getState());
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::refused);

    EXPECT_EQ(broker.setLocalTap(nullptr), "");
    EXPECT_TRUE(byIdentifier.getState());
    EXPECT_TRUE(policy.isOnCallersThread);
    EXPECT_FALSE(policy.isObserved() || late.isObserved()) << "the short way would stay closed";
    EXPECT_EQ(tap.count, 6);
}

// The objects' own side is not tapped: what they call, what was made from a pointer, what says so.
TEST_F(TappedCalls, AreThoseOfClients)
{
    Servant inner{"Inner"};
    inner.on<&QelLongClient::get>([] { return 7L; });
    policy.whenAsked = [] { return QelLongClient(TipprmiOID("Inner")).get() == 7; };
    ASSERT_EQ(broker.setLocalTap(&tap), "");
    EXPECT_TRUE(byIdentifier.getState());
    EXPECT_EQ(tap.count, 1) << "the call within the call is the object's own";
    tap.isRefusing = true;
    EXPECT_FALSE(byIdentifier.getState());
    policy.whenAsked = nullptr;
    EXPECT_TRUE(AdminStatePolicyClient(&policy).getState());
    {
        trs::UntappedCalls const own;
        EXPECT_TRUE(byIdentifier.getState());
    }
    EXPECT_EQ(tap.count, 2);
}

TEST_F(TappedCalls, TellObserversAndGiveThePermissionAway)
{
    struct Observer : TreflectObserver {
        Observer() : TreflectObserver(TipprmiOID(""), nullptr, "observer") {}
        ~Observer() override { withdraw(); }
        bool detected() override { return false; }
        bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
        {
            std::lock_guard const lock(mutex);
            bool state = false;
            told += parameters.getLength() == 1 && parameters[0].extract(state) && state ? 't' : '?';
            changed.notify_all();
            return true;
        }
        std::mutex mutex;
        std::condition_variable changed;
        std::string told;
    } observer;
    ASSERT_TRUE(byIdentifier.operation("getState").postObserve(&observer));
    ASSERT_EQ(broker.setLocalTap(&tap), "");
    {
        TreflectHandlerState const running; // the object runs on another thread meanwhile
        EXPECT_TRUE(byIdentifier.getState());
        EXPECT_TRUE(TreflectORB::hasRunPermission());
    }
    EXPECT_EQ(broker.setLocalTap(nullptr), "");
    EXPECT_TRUE(policy.isObserved()) << "it still has its observer";
    EXPECT_TRUE(byIdentifier.getState());
    std::unique_lock lock(observer.mutex);
    EXPECT_TRUE(observer.changed.wait_for(lock, support::patience, [&] { return observer.told.size() == 2; }));
    EXPECT_EQ(observer.told, "tt");
}

} // namespace
