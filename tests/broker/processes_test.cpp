// Two processes: what is left of calls and subscriptions when one of them ends, and calls in both directions at once.
#include "broker/CallFailure.h"
#include "platform/TreflectObserver.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Echo.h"

#include <atomic>

namespace {

using support::ChildProcess;
using trs::CallFailure;
using trs::lastCallFailure;

class Processes : public support::BrokerTest {
protected:
    std::unique_ptr<ChildProcess> startPeer()
    {
        auto peer =
            std::make_unique<ChildProcess>(TRSMAN_PEER_DIR "/peer", std::vector{"unix:" + path, "unix:" + ownPath});
        EXPECT_EQ(peer->readLine(), "ready");
        return peer;
    }

    std::string const ownPath = directory.file("own");
};

TEST_F(Processes, ACallEndsWithTheServerThatIsKilledInTheMiddle)
{
    trs::Broker::setDeadline(support::patience);
    auto peer = startPeer();
    TreflectORB const* const orb = peerAt("unix:" + path);
    auto const value = support::boundTo<QelLongClient>(orb, "Value");
    ASSERT_TRUE(value.set(1));
    std::thread killer([&] {
        EXPECT_EQ(peer->readLine(), "called");
        peer->signal(SIGKILL);
    });
    EXPECT_EQ(support::boundTo<QelLongClient>(orb, "Mute").get(), 0);
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::connectionLost);
    EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::unknown);
    killer.join();
    EXPECT_EQ(peer->waitForExit(), 128 + SIGKILL);

    EXPECT_FALSE(value.set(2));
    EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::no);
    EXPECT_FALSE(value.isConnected());
    peer = startPeer();
    EXPECT_TRUE(value.set(3)) << lastCallFailure().text();
}

TEST_F(Processes, CallEachOtherFromTheirHandlers)
{
    trs::Broker::setDeadline(support::patience);
    ASSERT_EQ(trs::Broker::instance().serve("unix:" + ownPath), "");
    TreflectORB const* const orb = peerAt("unix:" + path);
    support::Echo const own(orb);
    auto const peer = startPeer();
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (long depth = 0; depth < 20; ++depth) {
                failures += support::boundTo<QelLongClient>(orb, "Echo").set(depth) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

class Counter : public TreflectObserver {
public:
    Counter() : TreflectObserver(TipprmiOID(""), nullptr, "counter") {}
    ~Counter() override { withdraw(); }
    bool detected() override
    {
        ++count;
        return true;
    }

    std::atomic<int> count = 0;
};

TEST_F(Processes, ASubscriptionIsRenewedWhenTheServerIsBack)
{
    auto peer = startPeer();
    auto const value = support::boundTo<QelLongClient>(peerAt("unix:" + path), "Value");
    Counter counter;
    ASSERT_TRUE(value.operation("set").postObserve(&counter));
    // Calls until the observer is told of one.
    auto const isTold = [&] {
        int const before = counter.count;
        auto const end = std::chrono::steady_clock::now() + support::patience;
        while (counter.count == before && std::chrono::steady_clock::now() < end) {
            value.set(1);
            std::this_thread::yield();
        }
        return counter.count != before;
    };
    EXPECT_TRUE(isTold());
    peer.reset();
    EXPECT_FALSE(value.set(1));
    peer = startPeer();
    EXPECT_TRUE(isTold());
    EXPECT_TRUE(value.operation("set").removeObserver(&counter));
}

} // namespace
