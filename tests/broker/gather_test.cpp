// Many asynchronous calls at once, as many as may be.
#include "broker/Gather.h"

#include "broker/framework/QelOperations.h"
#include "rmi/Servant.h"
#include "tests/support/Requests.h"

#include <asio/bind_cancellation_slot.hpp>
#include <asio/bind_executor.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>

#include <algorithm>
#include <atomic>
#include <numeric>

namespace {

using namespace std::chrono_literals;
using support::Descriptor;
using support::Octets;
using Setting = std::tuple<QelLongClient, long>;
using Settings = std::vector<trs::Gathered<trs::Reply<bool>>>;

class Gathers : public support::BrokerTest {
protected:
    std::vector<Setting> settings(std::size_t count, TreflectORB const* orb) const
    {
        std::vector<Setting> calls;
        for (std::size_t i = 0; i < count; ++i) {
            calls.emplace_back(support::boundTo<QelLongClient>(orb, "Long"), static_cast<long>(i));
        }
        return calls;
    }
    // Whether it is even: the argument is the request's end.
    static Octets replyTo(Octets const& request)
    {
        Octets reply{0, 0, 0, 12, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        std::copy(request.begin() + 8, request.begin() + 12, reply.begin() + 8);
        reply.back() = request.back() % 2 == 0 ? 1 : 0;
        return reply;
    }
    static long count(Settings const& all, trs::CallFailure::CarriedOut carriedOut)
    {
        return std::ranges::count(all, carriedOut, [](auto const& each) { return trs::carriedOut(each.error); });
    }
};

TEST_F(Gathers, HaveNoMoreOnTheirWayThanMayBeAndKeepTheOrder)
{
    constexpr std::size_t count = 20;
    std::atomic<int> surplus = 0;
    support::FakePeer const peer(path, [&](Descriptor const& connection) {
        std::vector<Octets> unanswered;
        for (std::size_t read = 0; read < count || !unanswered.empty();) {
            while (unanswered.size() < 3 && read < count) {
                unanswered.push_back(connection.readMessage());
                ++read;
            }
            surplus += connection.hasInput(5ms) ? 1 : 0;
            connection.write(replyTo(unanswered.back())); // the newest first
            unanswered.pop_back();
        }
        connection.isClosedByPeer();
    });
    Settings const all =
        trs::valueOf(trs::gather<&QelLongClient::set>(settings(count, peerAt("unix:" + path)), 3, asio::use_future));
    ASSERT_EQ(all.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_FALSE(all[i].error) << i;
        EXPECT_EQ(all[i].reply.result(), i % 2 == 0) << i;
    }
    EXPECT_EQ(surplus, 0);
}

TEST_F(Gathers, EndWithTheirLastCallWhereverObjectsAre)
{
    Servant service("Long");
    std::atomic<long> sum = 0;
    service.on<&QelLongClient::set>([&sum](long const& value) {
        sum += value;
        return true;
    });
    service.on<&QelLongClient::get>([&sum] { return sum.load(); });
    for (TreflectORB const* const orb : {loopBack("unix:" + path), static_cast<TreflectORB const*>(nullptr)}) {
        sum = 0;
        auto calls = settings(1000, orb);
        EXPECT_EQ(trs::valueOf(trs::gather<&QelLongClient::set>(calls, 64, asio::use_future)).size(), 1000U);
        EXPECT_EQ(sum, 999 * 500);
        std::array const proxies{std::get<0>(calls[0]), QelLongClient(TipprmiOID("nobody"))};
        auto const got = trs::valueOf(trs::gather<&QelLongClient::get>(proxies, 0, asio::use_future));
        EXPECT_EQ(got.at(0).reply.result(), 999 * 500);
        EXPECT_TRUE(got.at(1).error == trs::CallFailure::Kind::noSuchObject);
    }
    std::promise<bool> told;
    auto const here = std::this_thread::get_id();
    trs::gather<&QelLongClient::set>(std::vector<Setting>(), 5, [&](Settings const& none) {
        told.set_value(none.empty() && std::this_thread::get_id() != here); // not within
    });
    EXPECT_TRUE(told.get_future().get());
}

TEST_F(Gathers, AreCancelledAsAWholeAndInTime)
{
    std::atomic<int> requests = 0;
    support::FakePeer const peer(path, [&](Descriptor const& connection) {
        while (!connection.readMessage().empty()) {
            ++requests;
        }
    });
    TreflectORB const* const orb = peerAt("unix:" + path);
    asio::cancellation_signal signal;
    std::promise<Settings> told;
    trs::gather<&QelLongClient::set>(
        settings(10, orb), 4,
        asio::bind_cancellation_slot(signal.slot(), [&](Settings all) { told.set_value(std::move(all)); }));
    while (requests < 4) {
        std::this_thread::yield();
    }
    signal.emit(asio::cancellation_type::all);
    Settings const all = told.get_future().get();
    EXPECT_EQ(count(all, trs::CallFailure::CarriedOut::unknown), 4);
    EXPECT_EQ(count(all, trs::CallFailure::CarriedOut::no), 6);
    EXPECT_TRUE(std::ranges::all_of(all, [](auto const& each) { return each.error == std::errc::operation_canceled; }));

    for (auto const& [error, reply] : trs::valueOf(
             trs::gather<&QelLongClient::set>(settings(3, orb), 2, trs::bindDeadline(20ms, asio::use_future)))) {
        EXPECT_TRUE(error == std::errc::timed_out);
    }
    EXPECT_EQ(requests, 7);

    // With the context of its handler it ends, too.
    auto context = std::make_unique<asio::io_context>();
    auto const witness = std::make_shared<int>();
    trs::gather<&QelLongClient::set>(settings(10, orb), 1,
                                     trs::bindDeadline(20ms, asio::bind_executor(*context, [witness](Settings const&) {
                                                           ADD_FAILURE() << "called";
                                                       })));
    while (requests < 8) {
        std::this_thread::yield();
    }
    context.reset();
    EXPECT_EQ(witness.use_count(), 1);
    trs::valueOf(trs::gather<&QelLongClient::set>(settings(1, orb), 1, trs::bindDeadline(60ms, asio::use_future)));
    EXPECT_EQ(requests, 9) << "and no other call is begun";
}

} // namespace
