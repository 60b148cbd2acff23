// Notifications of many peers, which no thread each waits for.
#include "broker/Async.h"
#include "broker/calls/Inbox.h"
#include "broker/framework/QelOperations.h"
#include "broker/serving/Server.h"
#include "platform/TreflectObserver.h"
#include "rmi/Servant.h"
#include "tests/support/Requests.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <numeric>

namespace {

using support::Descriptor;
using support::Octets;

class Listening final : public TreflectObserver {
public:
    explicit Listening(std::function<void(TipprmiSequence<TipprmiAny> const&)> act)
        : TreflectObserver(TipprmiOID(""), nullptr, "listening"), act_(std::move(act))
    {
    }
    ~Listening() override { withdraw(); }
    bool detected() override { return false; }
    bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
    {
        act_(parameters);
        return true;
    }

private:
    std::function<void(TipprmiSequence<TipprmiAny> const&)> const act_;
};

class Notifications : public support::BrokerTest {
protected:
    static std::size_t threadCount()
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
    }
    template <class Condition>
    static void awaitThat(Condition const& condition, char const* what)
    {
        auto const end = std::chrono::steady_clock::now() + support::patience;
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << what;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    // An execution of QelLong::set of the object "S", with that many bytes behind the number.
    static Octets numbered(long number, std::size_t size)
    {
        TipprmiStream message(100);
        trs::beginAddressed(message, trs::MessageKind::notification, 0, TipprmiOID("S"),
                            operationClassId<&QelLongClient::set>, 1);
        TipprmiSequence<TipprmiAny> parameters;
        parameters.push_back(TipprmiAny(number));
        TipprmiAny rest;
        std::fill_n(rest.extend(size), size, static_cast<unsigned char>(number));
        parameters.push_back(rest);
        trs::appendParameters(message, parameters);
        EXPECT_TRUE(trs::finishMessage(message, 0));
        return {message.data(), message.data() + message.size()};
    }
    bool observe(std::string const& endpoint, TreflectObserver& observer)
    {
        return support::boundTo<QelLongClient>(peerAt(endpoint), "S").operation("set").postObserve(&observer);
    }
};

// The peer cannot send more than this side takes, and everything comes in the end.
TEST_F(Notifications, OfASlowObserverHoldThePeerBackAndAreNotLost)
{
    constexpr long count = 1000;
    constexpr std::size_t size = 10000; // many times what the inbox and the system take
    std::atomic<long> sent = 0;
    support::FakePeer const peer(path, [&](Descriptor const& connection) {
        Octets const request = connection.readMessage();
        connection.write({0, 0, 0, 8, 7, 0, 0, 0, request[8], request[9], request[10], request[11]});
        for (long i = 0; i < count; ++i) {
            connection.write(numbered(i, size));
            ++sent;
        }
        connection.isClosedByPeer();
    });
    support::Gate gate;
    std::mutex mutex;
    std::vector<long> told;
    Listening observer([&](TipprmiSequence<TipprmiAny> const& parameters) {
        gate.pass();
        long number = count;
        parameters[0].extract(number);
        std::lock_guard const lock(mutex);
        told.push_back(number);
    });
    ASSERT_TRUE(observe("unix:" + path, observer));
    gate.awaitReached();
    long before = count;
    awaitThat(
        [&] { // until the peer gets no further
            long const last = std::exchange(before, sent.load());
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            return last == before;
        },
        "the peer is never held back");
    EXPECT_LT(static_cast<std::size_t>(before) * size, 8 * trs::Inbox::capacity);
    gate.open();
    awaitThat(
        [&] {
            std::lock_guard const lock(mutex);
            return told.size() >= std::size_t{count};
        },
        "some are lost");
    std::vector<long> expected(count);
    std::iota(expected.begin(), expected.end(), 0L);
    std::lock_guard const lock(mutex);
    EXPECT_EQ(told, expected);
}

TEST_F(Notifications, OfManyPeersCostNoThreadEach)
{
    constexpr std::size_t count = 100;
    Servant service("S");
    service.on<&QelLongClient::set>([](long const&) { return true; });
    trs::Server server(nullptr, 65536, trs::TimeAndChance(), {.executing = 2, .staying = 0});
    std::vector<std::string> endpoints;
    for (std::size_t i = 0; i < count; ++i) {
        trs::Endpoint endpoint;
        ASSERT_EQ(
            trs::Endpoint::parse(endpoints.emplace_back("unix:" + directory.file("s" + std::to_string(i))), endpoint),
            "");
        ASSERT_EQ(server.listen(endpoint), "");
    }
    std::atomic<std::size_t> told = 0;
    Listening observer([&](TipprmiSequence<TipprmiAny> const&) { ++told; });
    std::size_t const before = threadCount();
    for (std::string const& endpoint : endpoints) {
        ASSERT_TRUE(observe(endpoint, observer));
    }
    EXPECT_LT(threadCount(), before + 12);
    EXPECT_TRUE(support::boundTo<QelLongClient>(peerAt(endpoints.front()), "S").set(1));
    awaitThat([&] { return told == count; }, "somebody was not told");
    EXPECT_LT(threadCount(), before + 12);
    observer.withdraw();
    trs::Broker::instance().removePeers(); // before their server
}

// One peer's observer waits for another process; those of others are told meanwhile.
TEST_F(Notifications, OfOthersDoNotWaitForAnObserverThatWaits)
{
    Servant service("S");
    service.on<&QelLongClient::set>([](long const&) { return true; });
    TreflectORB const* const orb = loopBack("unix:" + path);
    auto const proxy = support::boundTo<QelLongClient>(orb, "S");
    support::Gate gate;
    Listening waiting([&](TipprmiSequence<TipprmiAny> const&) { gate.pass(); });
    ASSERT_TRUE(proxy.operation("set").postObserve(&waiting));
    EXPECT_TRUE(proxy.set(1));
    gate.awaitReached();

    constexpr std::size_t others = 8; // more than handler threads that execute
    std::atomic<std::size_t> told = 0;
    Listening quick([&](TipprmiSequence<TipprmiAny> const&) { ++told; });
    trs::Broker& broker = trs::Broker::instance();
    for (std::size_t i = 0; i < others; ++i) {
        std::string const endpoint = "unix:" + directory.file("s" + std::to_string(i));
        ASSERT_EQ(broker.serve(endpoint), "");
        ASSERT_TRUE(observe(endpoint, i % 2 == 0 ? waiting : quick));
    }
    EXPECT_TRUE(proxy.set(2)); // the first observer's threads wait for its first call
    awaitThat([&] { return told == others / 2; }, "they wait");
    gate.open();
}

// Where answers come in nothing may wait for one.
TEST_F(Notifications, AreNotAskedForWhereAnswersComeIn)
{
    Servant service("S");
    service.on<&QelLongClient::get>([] { return 1L; });
    service.on<&QelLongClient::set>([](long const&) { return true; });
    auto const proxy = support::boundTo<QelLongClient>(loopBack("unix:" + path), "S");
    Listening observer([](TipprmiSequence<TipprmiAny> const&) {});
    std::promise<bool> isObserved;
    std::promise<std::string> why;
    trs::asyncCall<&QelLongClient::get>(proxy, [&](std::error_code, auto const&) {
        isObserved.set_value(proxy.operation("set").postObserve(&observer));
        why.set_value(trs::lastCallFailure().reason);
    });
    EXPECT_FALSE(isObserved.get_future().get());
    EXPECT_EQ(why.get_future().get(),
              "a handler of an asynchronous call that runs where it was answered waits for nothing");
    EXPECT_TRUE(proxy.operation("set").postObserve(&observer));
}

} // namespace
