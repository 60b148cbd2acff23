// A server that has few threads for many connections: who has to wait for whom, and who has not.
#include "broker/CallFailure.h"
#include "broker/Deadline.h"
#include "broker/framework/QelOperations.h"
#include "broker/serving/Server.h"
#include "rmi/Servant.h"
#include "tests/support/Echo.h"
#include "tests/support/Requests.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <numeric>
#include <optional>
#include <sys/resource.h>

namespace {

using std::chrono::milliseconds;
using support::answered;
using support::boundTo;
using support::connectTo;
using support::Descriptor;
using support::Gate;
using support::isDone;
using support::numberedSetting;
using support::Octets;
using support::setting;
using support::operator+;

std::size_t entriesOf(char const* directory)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory), {}));
}
std::size_t threads() { return entriesOf("/proc/self/task"); }
std::size_t descriptors() { return entriesOf("/proc/self/fd"); }

// What the process has in memory, in pages.
std::size_t pages()
{
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident;
}
// How long clients come and go: scripts/come-and-go has them do so for long.
std::chrono::seconds timeToComeAndGo()
{
    char const* const seconds = std::getenv("TRSMAN_COME_AND_GO");
    return std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 0);
}

class FewThreads : public support::BrokerTest {
protected:
    FewThreads()
    {
        service.on<&QelLongClient::set>([this](long const& value) {
            {
                std::lock_guard const lock(mutex);
                values.push_back(value);
            }
            if (whenSet) {
                whenSet(value);
            }
            return true;
        });
    }
    ~FewThreads() override { server.reset(); }

    void serve(trs::Workers::Limits const& limits, std::size_t connections = 65536)
    {
        server.reset();
        server = std::make_unique<trs::Server>(nullptr, connections, trs::TimeAndChance(), limits);
        trs::Endpoint endpoint;
        ASSERT_EQ(trs::Endpoint::parse("unix:" + path, endpoint), "");
        ASSERT_EQ(server->listen(endpoint), "");
    }
    template <class Condition>
    static void awaitThat(Condition const& condition, char const* what)
    {
        auto const end = std::chrono::steady_clock::now() + support::patience;
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << what;
            std::this_thread::yield();
        }
    }
    static void expectServed(Descriptor const& client)
    {
        client.write(setting);
        EXPECT_EQ(client.readMessage(), isDone);
    }

    Servant service{"S"};
    std::function<void(long)> whenSet;
    std::mutex mutex;
    std::vector<long> values; // that were set, in their order
    std::unique_ptr<trs::Server> server;
};

TEST_F(FewThreads, IdleConnectionsCostNone)
{
    serve({});
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    std::size_t const count = std::min<std::size_t>(5000, (limit.rlim_cur - 200) / 2);
    std::vector<Descriptor> idle;
    for (std::size_t each = 0; each < count; ++each) {
        idle.push_back(connectTo(path));
    }
    auto const proxy = boundTo<QelLongClient>(peerAt("unix:" + path), "S");
    for (long call = 0; call < 500; ++call) {
        ASSERT_TRUE(proxy.set(call));
    }
    EXPECT_LT(threads(), 32U);
    EXPECT_EQ(server->counters().connections, count + 1);
    expectServed(idle.front());
    expectServed(idle.back());
}

TEST_F(FewThreads, ClientsThatComeAtOnceAreAllAnswered)
{
    serve({});
    sockaddr_un const address = support::addressOf(path);
    std::vector<Descriptor> clients;
    for (int each = 0; each < 300; ++each) {
        Descriptor& client = clients.emplace_back(::socket(AF_UNIX, SOCK_STREAM, 0));
        ASSERT_EQ(::connect(client.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    }
    for (Descriptor const& client : clients) {
        client.write(support::greeting + setting); // the request does not wait for the greeting
    }
    for (Descriptor const& client : clients) {
        ASSERT_EQ(client.read(support::greeting.size() + isDone.size()), support::greeting + isDone);
    }
}

TEST_F(FewThreads, HandlersThatCallEachOtherGoOnWithTwo)
{
    serve({.executing = 2, .threads = 64, .staying = 1});
    TreflectORB const* const self = peerAt("unix:" + path);
    support::Echo const echo(self);
    auto const proxy = boundTo<QelLongClient>(self, "Echo");
    EXPECT_TRUE(proxy.set(40)) << trs::lastCallFailure().text();
    EXPECT_LE(server->counters().threads, 64U);
}

TEST_F(FewThreads, WhenAllWaitForOthersARequestIsToldSo)
{
    serve({.executing = 2, .threads = 8, .staying = 1});
    TreflectORB const* const self = peerAt("unix:" + path);
    std::optional<trs::CallFailure> failure; // of the innermost call
    Servant nested{"Nested"};
    nested.on<&QelLongClient::set>([&](long const& depth) {
        bool const isDeeper = boundTo<QelLongClient>(self, "Nested").set(depth + 1);
        if (!isDeeper && !failure) {
            failure = trs::lastCallFailure();
        }
        return isDeeper;
    });
    EXPECT_FALSE(boundTo<QelLongClient>(self, "Nested").set(0));
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind, trs::CallFailure::Kind::busy);
    EXPECT_EQ(failure->carriedOut, trs::CallFailure::CarriedOut::no);
    EXPECT_THAT(failure->text(), testing::HasSubstr("no thread left"));
    EXPECT_EQ(server->counters().call(trs::ReplyStatus::busy), 1U);
    EXPECT_TRUE(boundTo<QelLongClient>(self, "S").set(1)) << "they are back";
}

TEST_F(FewThreads, AHandlerThatWaitsDelaysNobodyElse)
{
    serve({.executing = 1, .threads = 2, .staying = 0});
    Gate gate;
    whenSet = [&](long value) {
        if (value == 1) {
            gate.pass();
        }
    };
    Descriptor const slow = connectTo(path);
    slow.write(numberedSetting(1, 2) + numberedSetting(2, 1) + numberedSetting(3, 3));
    gate.awaitReached();
    EXPECT_EQ(slow.readMessage(), answered(1)) << "what was done does not wait for what is not";
    Descriptor const fast = connectTo(path);
    for (int call = 0; call < 100; ++call) {
        expectServed(fast);
    }
    gate.open();
    EXPECT_EQ(slow.readMessage(), answered(2));
    EXPECT_EQ(slow.readMessage(), answered(3));
}

TEST_F(FewThreads, HalfAMessageHoldsNone)
{
    serve({.executing = 1, .threads = 1, .staying = 0});
    Descriptor const slow = connectTo(path);
    Descriptor const silent = connectTo(path, false);
    for (unsigned char const octet : numberedSetting(9, 1)) {
        slow.write({octet});
        expectServed(connectTo(path));
    }
    EXPECT_EQ(slow.readMessage(), answered(9));
}

TEST_F(FewThreads, RequestsThatComeTogetherAreAnsweredInOrderAndTogether)
{
    serve({});
    Descriptor const client = connectTo(path);
    constexpr unsigned char count = 50;
    Octets requests;
    Octets answers;
    for (unsigned char each = 0; each < count; ++each) {
        requests = requests + numberedSetting(each, each);
        answers = answers + answered(each);
    }
    client.write(requests);
    Octets first(answers.size());
    EXPECT_EQ(::recv(client.get(), first.data(), first.size(), 0), static_cast<ssize_t>(first.size()));
    EXPECT_EQ(first, answers);
    std::vector<long> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(values, expected);

    for (int round = 0; round < 200; ++round) { // more than anybody's room at once
        client.write(requests);
        ASSERT_EQ(client.read(answers.size()), answers);
    }
}

TEST_F(FewThreads, OthersGetTheirTurnAfterSixteenRequests)
{
    serve({.executing = 1, .threads = 1, .staying = 0});
    whenSet = [&](long value) {
        if (value == 0) {
            awaitThat([&] { return server->counters().queued != 0; }, "the other one comes");
        }
    };
    Descriptor const greedy = connectTo(path);
    Descriptor const modest = connectTo(path);
    Octets requests;
    for (unsigned char each = 0; each < 60; ++each) {
        requests = requests + numberedSetting(each, each);
    }
    greedy.write(requests);
    awaitThat(
        [&] {
            std::lock_guard const lock(mutex);
            return !values.empty();
        },
        "the first request");
    modest.write(numberedSetting(1, 200));
    EXPECT_EQ(modest.readMessage(), answered(1));
    for (unsigned char each = 0; each < 60; ++each) {
        EXPECT_EQ(greedy.readMessage(), answered(each));
    }
    EXPECT_EQ(std::find(values.begin(), values.end(), 200) - values.begin(), 16);
}

TEST_F(FewThreads, WhoTakesNoAnswersIsNotReadAndHoldsNone)
{
    serve({.executing = 1, .threads = 1, .staying = 0});
    Descriptor const greedy = connectTo(path);
    std::size_t sent = 0;
    Octets request = setting;
    while (sent < 200000) {
        pollfd waiting{greedy.get(), POLLOUT, 0};
        if (::poll(&waiting, 1, 50) == 0) {
            break;
        }
        ssize_t const count = ::send(greedy.get(), request.data(), request.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        ASSERT_TRUE(count == static_cast<ssize_t>(request.size()) || count < 0);
        sent += count > 0 ? 1 : 0;
    }
    EXPECT_LT(sent, 200000U) << "it could go on for ever";
    expectServed(connectTo(path));
    for (std::size_t each = 0; each < sent; ++each) {
        ASSERT_EQ(greedy.readMessage(), isDone) << each << " of " << sent;
    }
    expectServed(greedy);
}

TEST_F(FewThreads, WhoTakesNoAnswersIsSentAwayInTheEnd)
{
    trs::LogCapture const log;
    trs::Broker::setDeadline(milliseconds(500)); // and the same for a request that this busy machine lets be half sent
    serve({.executing = 1, .threads = 1, .staying = 0});
    Descriptor const greedy = connectTo(path);
    Octets requests;
    for (int each = 0; each < 50000; ++each) { // more than the system keeps for both
        requests.insert(requests.end(), setting.begin(), setting.end());
    }
    greedy.write(requests); // until it is sent away
    awaitThat([&] { return server->counters().connections == 0; }, "its end");
    server.reset();
    EXPECT_TRUE(log.contains("a connection to unix:" + path + " is closed: a reply was not taken in time"));
}

TEST_F(FewThreads, WhatIsTakenLateIsWhole)
{
    serve({});
    Servant sized{"Sized"};
    Descriptor const client = connectTo(path);
    ::shutdown(client.get(), SHUT_WR); // that nothing more comes ends nothing that is under way
    EXPECT_TRUE(client.isClosedByPeer());

    Descriptor const half = connectTo(path);
    Octets requests;
    for (int each = 0; each < 1000; ++each) {
        requests = requests + setting;
    }
    half.write(requests);
    ::shutdown(half.get(), SHUT_WR);
    for (int each = 0; each < 1000; ++each) {
        ASSERT_EQ(half.readMessage(), isDone) << each;
    }
    EXPECT_TRUE(half.isClosedByPeer());
}

TEST_F(FewThreads, ConnectionsThatComeAndGoLeaveNothing)
{
    serve({});
    expectServed(connectTo(path));
    awaitThat([&] { return server->counters().connections == 0; }, "the end of the first");
    std::size_t const before = descriptors();
    std::size_t const threadsBefore = threads();
    std::size_t pagesBefore = 0;
    std::size_t came = 0;
    auto const end = std::chrono::steady_clock::now() + timeToComeAndGo();
    for (int round = 0; round < 20 || std::chrono::steady_clock::now() < end; ++round) {
        pagesBefore = round == 10 ? pages() : pagesBefore; // what is kept for the next is there by then
        std::vector<Descriptor> some;
        for (int each = 0; each < 50; ++each) {
            some.push_back(connectTo(path, each % 5 != 0));
            ++came;
            if (each % 5 == 1) {
                expectServed(some.back());
            } else if (each % 5 == 2) {
                some.back().write(setting); // and goes before the answer comes
            } else if (each % 5 == 3) {
                some.back().write({0, 0});
            }
        }
    }
    awaitThat([&] { return server->counters().connections == 0; }, "the end of all");
    awaitThat([&] { return descriptors() == before; }, "the end of their descriptors");
    EXPECT_LE(threads(), threadsBefore + 64);
#ifndef TRSMAN_SANITIZED // which keeps what is freed
    EXPECT_LT(pages(), pagesBefore + 1024) << "after " << came;
#endif
    server.reset();
    EXPECT_LE(threads(), threadsBefore - 2) << "those of the server have ended";
}

TEST_F(FewThreads, ServingEndsWhileAllOfThisGoesOn)
{
    for (int round = 0; round < 5; ++round) {
        serve({.executing = 3, .threads = 8, .staying = 2});
        std::atomic<bool> isOver = false;
        std::atomic<int> calls = 0;
        std::vector<std::thread> clients;
        for (int each = 0; each < 4; ++each) {
            clients.emplace_back([&, each] {
                while (!isOver) {
                    Descriptor const client(::socket(AF_UNIX, SOCK_STREAM, 0));
                    sockaddr_un const address = support::addressOf(path);
                    if (::connect(client.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address) != 0) {
                        continue;
                    }
                    client.write(support::greeting + setting + setting + setting);
                    if (each % 2 == 0) {
                        client.read(support::greeting.size() + 3 * isDone.size());
                    }
                    ++calls;
                }
            });
        }
        awaitThat([&] { return calls > 40; }, "calls");
        server.reset();
        isOver = true;
        for (std::thread& client : clients) {
            client.join();
        }
        serve({}); // so that who connects late is not kept
        expectServed(connectTo(path));
    }
}

TEST_F(FewThreads, TheServerCountsWhatItDoes)
{
    serve({});
    Descriptor const client = connectTo(path);
    constexpr unsigned calls = 16;
    for (unsigned call = 0; call < calls; ++call) {
        expectServed(client);
    }
    Octets const absent = support::message(1, 0, "Absent", {0, 0, 0, 1});
    client.write(absent);
    EXPECT_EQ(client.readMessage().size(), 12U);
    awaitThat([&] { return server->counters().executing == 0 && server->counters().calls[1] == 1; }, "what is counted");
    trs::ServerCounters const counted = server->counters();
    EXPECT_EQ(counted.connections, 1U);
    EXPECT_EQ(counted.call(trs::ReplyStatus::done), calls);
    EXPECT_EQ(counted.bytesIn, calls * setting.size() + absent.size());
    EXPECT_EQ(counted.bytesOut, calls * isDone.size() + 12);
    EXPECT_EQ(std::accumulate(counted.times.begin(), counted.times.end(), std::uint64_t{0}), (calls + 1 + 7) / 8);
    EXPECT_GT(counted.timed.count(), 0);
}

} // namespace
