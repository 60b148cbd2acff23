// Observers: what they are told, when, and when no more.
#include "adapter/NmiRmiAdapterClient.h"
#include "broker/framework/QelOperations.h"
#include "platform/TreflectObserver.h"
#include "rmi/Servant.h"
#include "tests/support/Sockets.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace {

// Keeps what it was told and lets the test wait for it.
class Listener : public TreflectObserver {
public:
    Listener() : TreflectObserver(TipprmiOID(""), nullptr, "listener") {}
    ~Listener() override { withdraw(); }

    bool detected() override { return true; }
    bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
    {
        if (whenTold) {
            whenTold();
        }
        std::lock_guard const lock(mutex_);
        ++count_;
        result_ = argument_ = -1;
        hasAll_ = parameters.getLength() == 2 && parameters[0].extract(isAccepted_) && parameters[1].extract(argument_);
        changed_.notify_all();
        return true;
    }
    bool waitFor(int count)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, support::patience, [&] { return count_ >= count; });
    }
    int count() const
    {
        std::lock_guard const lock(mutex_);
        return count_;
    }
    long argument() const
    {
        std::lock_guard const lock(mutex_);
        return hasAll_ && isAccepted_ ? argument_ : -1;
    }

    std::function<void()> whenTold;

private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
    bool hasAll_ = false;
    bool isAccepted_ = false;
    long argument_ = -1;
    long result_ = -1;
};

class Observers : public support::BrokerTest, public testing::WithParamInterface<bool> {
protected:
    Observers()
    {
        service.on<&QelLongClient::set>([](long const&) { return true; });
        proxy = support::boundTo<QelLongClient>(GetParam() ? loopBack("unix:" + path) : nullptr, "S");
    }

    Servant service{"S"};
    QelLongClient proxy;
};

TEST_P(Observers, AreToldResultAndArgumentsOfEveryExecution)
{
    Listener listener;
    ASSERT_TRUE(proxy.operation("set").postObserve(&listener));
    constexpr int most = 5000; // faster than they are told
    for (long value = 1; value <= most; ++value) {
        ASSERT_TRUE(proxy.set(value));
    }
    ASSERT_TRUE(listener.waitFor(most));
    EXPECT_EQ(listener.argument(), most);
    EXPECT_EQ(listener.count(), most);

    EXPECT_TRUE(proxy.operation("set").removeObserver(&listener));
    proxy.set(0);
    EXPECT_EQ(listener.count(), most);
    EXPECT_FALSE(proxy.operation("set").removeObserver(&listener)) << "it was removed already";
}

TEST_P(Observers, AreRegisteredOnlyOnWhatThereIs)
{
    Listener listener;
    EXPECT_FALSE(proxy.operation("fly").exists());
    EXPECT_FALSE(proxy.operation("fly").postObserve(&listener));
    auto const absent = support::boundTo<QelLongClient>(proxy.getStub_()->orb(), "Absent");
    EXPECT_FALSE(absent.operation("set").postObserve(&listener));
    EXPECT_FALSE(QelLongClient().operation("set").postObserve(&listener));
}

TEST_P(Observers, MayGoWhileNotificationsArrive)
{
    std::atomic<bool> isOver = false;
    std::thread caller([&] {
        for (long value = 0; !isOver; ++value) {
            proxy.set(value);
        }
    });
    for (int round = 0; round < 100; ++round) {
        Listener listener;
        EXPECT_TRUE(proxy.operation("set").postObserve(&listener));
        if (round % 2 == 0) {
            EXPECT_TRUE(listener.waitFor(1));
        }
    }
    isOver = true;
    caller.join();
    EXPECT_TRUE(proxy.set(1));
}

TEST_P(Observers, MayWithdrawFromWithinAndWhileTheirPermissionIsAwaited)
{
    Listener fromWithin;
    fromWithin.whenTold = [&] { fromWithin.withdraw(); };
    ASSERT_TRUE(proxy.operation("set").postObserve(&fromWithin));
    proxy.set(1);
    proxy.set(2);
    ASSERT_TRUE(fromWithin.waitFor(1));

    // The notification waits for the permission that the withdrawing thread holds.
    Listener awaited;
    ASSERT_TRUE(proxy.operation("set").postObserve(&awaited));
    TreflectHandlerState const running;
    proxy.set(3);
    awaited.withdraw();
    int const told = awaited.count();
    proxy.set(4);
    EXPECT_EQ(awaited.count(), told);
    EXPECT_EQ(fromWithin.count(), 1);
}

INSTANTIATE_TEST_SUITE_P(All, Observers, testing::Bool(),
                         [](auto const& road) { return road.param ? "Remote" : "InProcess"; });

} // namespace
