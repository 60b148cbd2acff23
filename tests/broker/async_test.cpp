// Asynchronous calls: by every token, given up at every moment, and against peers that answer as they please.
#include "broker/Async.h"
#include "broker/framework/QelOperations.h"
#include "clients/ip/IfNetClient.h"
#include "rmi/Servant.h"
#include "tests/support/Sockets.h"

#include <asio/bind_cancellation_slot.hpp>
#include <asio/bind_executor.hpp>
#include <asio/co_spawn.hpp>
#include <asio/experimental/deferred.hpp>
#include <asio/io_context.hpp>
#include <asio/use_awaitable.hpp>
#include <asio/use_future.hpp>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <optional>

namespace {

using namespace std::chrono_literals;
using support::Descriptor;
using support::Octets;
using Kind = trs::CallFailure::Kind;
using CarriedOut = trs::CallFailure::CarriedOut;

// What several calls came to, whichever threads their handlers run on.
class Ends {
public:
    template <class... A>
    void operator()(std::error_code error, trs::Reply<A...> const&)
    {
        std::lock_guard const lock(mutex_);
        errors_.push_back(error);
        changed_.notify_all();
    }
    std::vector<std::error_code> await(std::size_t count)
    {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, support::patience, [&] { return errors_.size() >= count; }));
        return errors_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::error_code> errors_;
};

class AsyncCalls : public support::BrokerTest {
protected:
    AsyncCalls()
    {
        service_.on<&QelLongClient::set>([this](long const& value) {
            value_ = value;
            return value >= 0;
        });
        service_.on<&QelLongClient::get>([this] { return value_.load(); });
        service_.on<&IfNetClient::getMtu>([this](long& value) {
            value = value_;
            return GetClient::OK;
        });
    }
    QelLongClient remote() { return support::boundTo<QelLongClient>(loopBack("unix:" + path), "Long"); }
    QelLongClient fake() { return support::boundTo<QelLongClient>(peerAt("unix:" + path), "Long"); }

    // True, and for the number that the request has.
    static Octets replyTo(Octets const& request)
    {
        Octets reply{0, 0, 0, 12, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
        std::copy(request.begin() + 8, request.begin() + 12, reply.begin() + 8);
        return reply;
    }
    static std::vector<Octets> readAll(Descriptor const& connection, std::size_t count)
    {
        std::vector<Octets> requests(count);
        std::ranges::generate(requests, [&] { return connection.readMessage(); });
        return requests;
    }

    Servant service_{"Long"};
    std::atomic<long> value_ = 0;
};

TEST_F(AsyncCalls, GoByEveryToken)
{
    for (QelLongClient const& proxy : {remote(), QelLongClient(TipprmiOID("Long"))}) {
        EXPECT_TRUE(trs::asyncCall<&QelLongClient::set>(proxy, 5, asio::use_future).get().result());
        EXPECT_EQ(trs::valueOf(trs::asyncCall<&QelLongClient::get>(proxy, asio::use_future)).result(), 5);
        IfNetClient interface;
        interface.TipprmiObjectClient::connect(proxy.getStub_()->orb(), proxy.getOID());
        auto const [status, mtu] = trs::asyncCall<&IfNetClient::getMtu>(interface, asio::use_future).get();
        EXPECT_TRUE(status == GetClient::OK);
        EXPECT_EQ(mtu, 5);

        std::promise<long> told;
        trs::asyncCall<&QelLongClient::get>(
            proxy, [&told](std::error_code error, auto const& reply) { told.set_value(error ? -1 : reply.result()); });
        EXPECT_EQ(told.get_future().get(), 5);

        asio::io_context context;
        bool isInContext = false;
        trs::asyncCall<&QelLongClient::get>(proxy,
                                            asio::bind_executor(context, [&](std::error_code error, auto const&) {
                                                EXPECT_FALSE(error);
                                                isInContext = context.get_executor().running_in_this_thread();
                                            }));
        auto deferred = trs::asyncCall<&QelLongClient::set>(proxy, -3, asio::experimental::deferred);
        bool isRefused = false;
        asio::co_spawn(
            context,
            [&]() -> asio::awaitable<void> {
                auto const reply =
                    co_await trs::asyncCall<&QelLongClient::get>(proxy, trs::bindDeadline(3s, asio::use_awaitable));
                EXPECT_EQ(reply.result(), 5);
                auto const refused = co_await std::move(deferred)(asio::use_awaitable);
                isRefused = !refused.result();
            },
            [](std::exception_ptr const& thrown) { EXPECT_FALSE(thrown); });
        context.run();
        EXPECT_TRUE(isInContext);
        EXPECT_TRUE(isRefused);
        EXPECT_EQ(value_, -3);
    }
}

TEST_F(AsyncCalls, TellWhyTheyFailed)
{
    auto const unknown = support::boundTo<QelLongClient>(loopBack("unix:" + path), "nobody");
    std::promise<std::pair<std::error_code, std::string>> told;
    trs::asyncCall<&QelLongClient::set>(unknown, 5, [&told](std::error_code error, auto const& reply) {
        EXPECT_FALSE(reply.result());
        told.set_value({error, reply.failure().text()});
    });
    auto const [error, text] = told.get_future().get();
    EXPECT_TRUE(error == Kind::noSuchObject);
    EXPECT_FALSE(error == Kind::deadline);
    EXPECT_EQ(trs::carriedOut(error), CarriedOut::no);
    EXPECT_EQ(error.message(), "there is no such object; it was not carried out");
    EXPECT_NE(text.find(path), std::string::npos);

    auto const nowhere = support::boundTo<QelLongClient>(peerAt("unix:" + path + "-none"), "Long");
    Ends ends;
    trs::asyncCall<&QelLongClient::set>(nowhere, 5, std::ref(ends));
    EXPECT_TRUE(ends.await(1)[0] == Kind::notConnected);
    EXPECT_TRUE(ends.await(1)[0] == std::errc::not_connected);
    trs::asyncCall<&QelLongClient::set>(QelLongClient(), 5, std::ref(ends));
    EXPECT_TRUE(ends.await(2)[1] == Kind::notConnected);
}

TEST_F(AsyncCalls, LookForTheObjectAmongPeers)
{
    peerAt("unix:" + path + "-none");
    loopBack("unix:" + path);
    peerAt("unix:" + path + "-neither");
    QelLongClient proxy(TipprmiOID("Moved"));
    Ends ends;
    trs::asyncCall<&QelLongClient::set>(proxy, 5, std::ref(ends));
    EXPECT_TRUE(ends.await(1)[0] == Kind::notConnected) << "a silent one may have it";
    support::FakePeer const other(path + "-none", [](Descriptor const& connection) {
        Octets found = connection.readMessage();
        EXPECT_EQ(found[4], 3) << "locate";
        Octets reply{0, 0, 0, 8, 4, 0, 0, 0, found[8], found[9], found[10], found[11]};
        connection.write(reply);
        connection.write(replyTo(connection.readMessage()));
        connection.isClosedByPeer();
    });
    trs::asyncCall<&QelLongClient::set>(proxy, 5, std::ref(ends));
    EXPECT_FALSE(ends.await(2)[1]);
    trs::Broker::instance().removePeers();
    ::unlink((path + "-none").c_str());
}

TEST_F(AsyncCalls, AreAnsweredInAnyOrderOrNotAtAll)
{
    support::FakePeer const peer(path, [](Descriptor const& connection) {
        std::vector<Octets> requests = readAll(connection, 4);
        connection.write(replyTo(requests[3]));
        connection.write(replyTo(requests[3]));
        connection.write(replyTo(requests[1]));
        requests.push_back(connection.readMessage());
        connection.write(replyTo(requests[2])); // late: it was given up
        connection.write(replyTo(requests[0]));
        connection.write(replyTo(requests[4]));
        requests[4][11] = 99;
        connection.write(replyTo(requests[4])); // never asked
        EXPECT_TRUE(connection.isClosedByPeer());
    });
    auto const proxy = fake();
    Ends ends;
    Ends givenUp;
    trs::asyncCall<&QelLongClient::set>(proxy, 0, std::ref(ends));
    trs::asyncCall<&QelLongClient::set>(proxy, 1, std::ref(ends));
    trs::asyncCall<&QelLongClient::set>(proxy, 2, trs::bindDeadline(100ms, std::ref(givenUp)));
    trs::asyncCall<&QelLongClient::set>(proxy, 3, std::ref(ends));
    ends.await(2);
    EXPECT_TRUE(givenUp.await(1)[0] == Kind::deadline);
    EXPECT_EQ(trs::carriedOut(givenUp.await(1)[0]), CarriedOut::unknown);
    trs::asyncCall<&QelLongClient::set>(proxy, 4, std::ref(ends));
    for (std::error_code const error : ends.await(4)) {
        EXPECT_FALSE(error) << error.message();
    }
}

TEST_F(AsyncCalls, EndOnceWhenTheirPeerDies)
{
    std::promise<void> started;
    auto const areAllStarted = started.get_future().share();
    support::FakePeer const peer(path, [&](Descriptor const& connection) {
        readAll(connection, 64);
        areAllStarted.wait();
    });
    auto const proxy = fake();
    Ends ends;
    for (long i = 0; i < 100; ++i) { // more than the window
        trs::asyncCall<&QelLongClient::set>(proxy, i, std::ref(ends));
    }
    started.set_value();
    auto const errors = ends.await(100);
    EXPECT_EQ(std::ranges::count_if(errors, [](auto error) { return trs::carriedOut(error) == CarriedOut::unknown; }),
              64);
    for (std::error_code const error : errors) {
        EXPECT_TRUE(error == Kind::connectionLost) << error.message();
    }
    trs::Broker::instance().removePeers();
    EXPECT_EQ(ends.await(100).size(), 100U);
}

TEST_F(AsyncCalls, AreCancelledBeforeWhileAndAfterTheyAreAnswered)
{
    auto const proxy = remote();
    EXPECT_TRUE(proxy.set(1));
    std::size_t cancelled = 0;
    std::size_t answered = 0;
    for (int i = 0; i < 300; ++i) {
        asio::io_context context;
        asio::cancellation_signal signal;
        std::optional<std::error_code> end;
        unsigned ends = 0;
        trs::asyncCall<&QelLongClient::get>(
            proxy, asio::bind_cancellation_slot(signal.slot(),
                                                asio::bind_executor(context, [&](std::error_code error, auto const&) {
                                                    end = error;
                                                    ++ends;
                                                })));
        std::thread canceller([&signal, i] {
            std::this_thread::sleep_for(std::chrono::microseconds(i));
            signal.emit(asio::cancellation_type::all);
        });
        context.run();
        canceller.join();
        ASSERT_EQ(ends, 1U);
        ASSERT_TRUE(!*end || *end == Kind::cancelled) << end->message();
        ++(*end ? cancelled : answered);
    }
    EXPECT_EQ(cancelled + answered, 300U);
    EXPECT_TRUE(proxy.set(2)) << "the connection goes on";
}

TEST_F(AsyncCalls, ThatWereCancelledBeforeTheyWereSentAreNotCarriedOut)
{
    support::FakePeer const peer(path, [](Descriptor const& connection) {
        std::vector<Octets> const requests = readAll(connection, 64);
        std::ranges::for_each(requests, [&](Octets const& request) { connection.write(replyTo(request)); });
        EXPECT_TRUE(connection.isClosedByPeer()) << "nothing more is sent";
    });
    auto const proxy = fake();
    Ends sent;
    for (long i = 0; i < 64; ++i) {
        trs::asyncCall<&QelLongClient::set>(proxy, i, std::ref(sent));
    }
    asio::cancellation_signal signal;
    Ends waiting;
    trs::asyncCall<&QelLongClient::set>(proxy, 64, asio::bind_cancellation_slot(signal.slot(), std::ref(waiting)));
    signal.emit(asio::cancellation_type::terminal);
    auto const error = waiting.await(1)[0];
    EXPECT_TRUE(error == std::errc::operation_canceled);
    sent.await(64);
    trs::Broker::instance().removePeers();
}

TEST_F(AsyncCalls, EndWithTheContextOfTheirHandlers)
{
    support::FakePeer const peer(path, [](Descriptor const& connection) {
        std::vector<Octets> const requests = readAll(connection, 2);
        connection.isClosedByPeer();
    });
    auto const proxy = fake();
    auto const token = std::make_shared<int>();
    {
        asio::io_context context;
        for (int i = 0; i < 2; ++i) {
            trs::asyncCall<&QelLongClient::set>(
                proxy, 5, asio::bind_executor(context, [token](std::error_code, auto const&) { FAIL(); }));
        }
        asio::co_spawn(
            context,
            [&, kept = token]() -> asio::awaitable<void> {
                co_await trs::asyncCall<&QelLongClient::get>(proxy, asio::use_awaitable);
                ADD_FAILURE();
            },
            [](std::exception_ptr const&) { FAIL(); });
        context.poll();
    }
    EXPECT_EQ(token.use_count(), 1);
    trs::Broker::instance().removePeers();
}

TEST_F(AsyncCalls, AreNotWaitedForWhereThatWouldLastForEver)
{
    auto const proxy = remote();
    std::promise<std::error_code> told;
    trs::asyncCall<&QelLongClient::set>(proxy, 1, [&](std::error_code, auto const&) {
        std::error_code error;
        try {
            trs::asyncCall<&QelLongClient::set>(proxy, 2, asio::use_future).get();
        } catch (std::system_error const& thrown) {
            error = thrown.code();
        }
        told.set_value(error);
    });
    EXPECT_TRUE(told.get_future().get() == std::errc::resource_deadlock_would_occur);

    // A handler that waits for a call of an object of its own process.
    Servant waiting{"Waiting"};
    waiting.on<&QelLongClient::get>(
        [&] { return trs::valueOf(trs::asyncCall<&QelLongClient::get>(proxy, asio::use_future)).result() + 1; });
    value_ = 6;
    auto const outer = support::boundTo<QelLongClient>(loopBack("unix:" + path + "-2"), "Waiting");
    EXPECT_EQ(outer.get(), 7);
    ::unlink((path + "-2").c_str());
}

TEST_F(AsyncCalls, OfObjectsHereAreGivenUpAtTheirDeadline)
{
    Ends ends;
    {
        TreflectHandlerState const running; // nobody else runs
        trs::asyncCall<&QelLongClient::set>(QelLongClient(TipprmiOID("Long")), 8,
                                            trs::bindDeadline(50ms, std::ref(ends)));
        auto const error = ends.await(1)[0];
        EXPECT_TRUE(error == Kind::deadline);
    }
    trs::asyncCall<&QelLongClient::set>(QelLongClient(TipprmiOID("Long")), 9, std::ref(ends));
    EXPECT_FALSE(ends.await(2)[1]);
}

TEST_F(AsyncCalls, OfManyThreadsAreAnsweredEachByItsOwn)
{
    service_.on<&QelLongClient::set>([](long const& value) { return value % 3 == 0; });
    auto const proxy = remote();
    std::atomic<int> wrong = 0;
    std::vector<std::thread> callers;
    for (long first = 0; first < 4; ++first) {
        callers.emplace_back([&, first] {
            std::vector<std::pair<long, std::future<trs::Reply<bool>>>> futures;
            for (long i = 0; i < 500; ++i) {
                futures.emplace_back(first + i,
                                     trs::asyncCall<&QelLongClient::set>(proxy, first + i, asio::use_future));
            }
            for (auto& [value, future] : futures) {
                wrong += future.get().result() != (value % 3 == 0) ? 1 : 0;
            }
        });
    }
    std::ranges::for_each(callers, &std::thread::join);
    EXPECT_EQ(wrong, 0);
}

} // namespace
