// A client against servers that do not answer as they should: the call fails, and the next one works.
#include "broker/CallFailure.h"
#include "broker/Deadline.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "rmi/Servant.h"
#include "tests/support/Sockets.h"

#include <atomic>
#include <gmock/gmock.h>
#include <sys/resource.h>

namespace {

using support::Descriptor;
using support::Octets;
using trs::CallFailure;
using trs::lastCallFailure;

class HostileServer : public support::BrokerTest {
protected:
    // Calls once against a peer that treats the request as told, then against an honest one at the same place.
    void expectFailure(support::FakePeer::Treatment treatment, std::string const& what,
                       CallFailure::CarriedOut carriedOut = CallFailure::CarriedOut::unknown)
    {
        SCOPED_TRACE(what);
        auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
        unsigned long elapsed = 4711;
        {
            support::FakePeer const peer(path, std::move(treatment));
            EXPECT_FALSE(proxy.getElapsedTime(elapsed));
        }
        EXPECT_EQ(elapsed, 4711U) << "the out-argument was touched";
        EXPECT_NE(lastCallFailure().kind, CallFailure::Kind::none);
        EXPECT_EQ(lastCallFailure().carriedOut, carriedOut) << lastCallFailure().text();
        EXPECT_THAT(lastCallFailure().text(), testing::HasSubstr(path));
        ::unlink(path.c_str());
        support::FakePeer const honest(path, [this](Descriptor const& connection) { answer(connection); });
        EXPECT_TRUE(proxy.getElapsedTime(elapsed)) << lastCallFailure().text();
        EXPECT_EQ(elapsed, 9U);
        ::unlink(path.c_str());
    }

    // The reply that a request wants: true and 9.
    static Octets replyTo(Octets const& request)
    {
        Octets reply{0, 0, 0, 16, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 9};
        std::copy(request.begin() + 8, request.begin() + 12, reply.begin() + 8);
        return reply;
    }
    void answer(Descriptor const& connection)
    {
        for (;;) {
            Octets const request = connection.readMessage();
            if (request.size() < 12) {
                return;
            }
            connection.write(replyTo(request));
        }
    }
};

TEST_F(HostileServer, ThatNeverAnswersIsGivenUpAtTheDeadline)
{
    trs::Broker::setDeadline(std::chrono::milliseconds(50));
    expectFailure([](Descriptor const& connection) { connection.isClosedByPeer(); }, "greets and is silent");
    EXPECT_EQ(trs::lastCallFailure().kind, CallFailure::Kind::none);

    auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
    support::FakePeer const mute(
        path, [](Descriptor const& connection) { connection.read(9); }, false);
    unsigned long elapsed = 0;
    EXPECT_FALSE(proxy.getElapsedTime(elapsed));
    EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::no) << "nothing was sent to it";
}

TEST_F(HostileServer, ThatDripsItsReplyDoesNotStretchTheDeadline)
{
    trs::Broker::setDeadline(std::chrono::milliseconds(100));
    expectFailure(
        [](Descriptor const& connection) {
            Octets const reply = replyTo(connection.readMessage());
            for (std::size_t i = 0; i + 1 < reply.size(); ++i) {
                connection.write({reply[i]});
                pollfd waiting{connection.get(), POLLIN, 0};
                if (::poll(&waiting, 1, 40) > 0) {
                    return; // the caller has gone
                }
            }
            connection.isClosedByPeer();
        },
        "one byte at a time");
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::none);
}

TEST_F(HostileServer, ThatAnswersNonsenseIsNotBelieved)
{
    struct Case {
        char const* what;
        std::function<void(Octets&)> change;
    };
    Case const cases[] = {
        {"4 GiB to come", [](Octets& reply) { reply[0] = reply[1] = reply[2] = reply[3] = 0xff; }},
        {"shorter than a header", [](Octets& reply) { reply[3] = 7; }},
        {"another number", [](Octets& reply) { reply[11] ^= 1; }},
        {"the next number", [](Octets& reply) { ++reply[11]; }},
        {"a request", [](Octets& reply) { reply[4] = 1; }},
        {"a kind that is none", [](Octets& reply) { reply[4] = 99; }},
        {"a status that is none", [](Octets& reply) { reply[5] = 99; }},
        {"something in the reserved bytes", [](Octets& reply) { reply[7] = 1; }},
        {"another language", [](Octets& reply) { reply.assign(4096, 'A'); }},
    };
    for (Case const& one : cases) {
        expectFailure(
            [&one](Descriptor const& connection) {
                Octets reply = replyTo(connection.readMessage());
                one.change(reply);
                connection.write(reply);
                connection.isClosedByPeer();
            },
            one.what);
    }
}

// What comes once more for an earlier request is thrown away.
TEST_F(HostileServer, ThatRepeatsItselfIsHeardOnce)
{
    constexpr unsigned char endless = 5; // the request whose answer does not come for repetitions of the one before
    std::atomic<int> connections = 0;
    support::FakePeer const peer(path, [&connections](Descriptor const& connection) {
        ++connections;
        Octets before;
        for (Octets request = connection.readMessage(); request.size() >= 12; request = connection.readMessage()) {
            Octets const reply = replyTo(request);
            do {
                connection.write(before);
            } while (request[11] == endless && ::send(connection.get(), before.data(), 20, MSG_NOSIGNAL) > 0);
            connection.write(reply);
            before = reply;
            before.insert(before.end(), reply.begin(), reply.end());
        }
    });
    auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
    unsigned long elapsed = 0;
    for (int call = 1; call < endless; ++call) {
        EXPECT_TRUE(proxy.getElapsedTime(elapsed)) << lastCallFailure().text();
    }
    EXPECT_EQ(connections, 1);
    trs::Broker::setDeadline(std::chrono::milliseconds(100));
    EXPECT_FALSE(proxy.getElapsedTime(elapsed));
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::deadline) << lastCallFailure().text();
}

TEST_F(HostileServer, ThatCutsItsReplyAtAnyByteFailsThatCallOnly)
{
    for (std::size_t length = 0; length < 20; ++length) {
        expectFailure(
            [length](Descriptor const& connection) {
                Octets reply = replyTo(connection.readMessage());
                reply.resize(length);
                connection.write(reply);
            },
            "cut after " + std::to_string(length));
    }
}

// Whatever single bit is wrong, the caller gets an answer in time, and the next call works.
TEST_F(HostileServer, ThatFlipsAnyBitOfItsReplyDoesNoHarm)
{
    trs::Broker::setDeadline(std::chrono::milliseconds(100));
    std::atomic<unsigned> bit = 0;
    support::FakePeer const peer(path, [&bit](Descriptor const& connection) {
        for (;;) {
            Octets const request = connection.readMessage();
            if (request.size() < 12) {
                return;
            }
            Octets reply = replyTo(request);
            if (unsigned const flipped = bit; flipped < reply.size() * 8) {
                support::flip(reply, flipped);
            }
            connection.write(reply);
        }
    });
    auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
    for (unsigned flipped = 0; flipped < 20 * 8; ++flipped) {
        SCOPED_TRACE(flipped);
        bit = flipped;
        unsigned long elapsed = 0;
        bool const result = proxy.getElapsedTime(elapsed);
        bool const isInHeader = flipped < 12 * 8;
        EXPECT_FALSE(isInHeader && result && elapsed == 9) << "a wrong header was believed";
        bit = 20 * 8;
        EXPECT_TRUE(proxy.getElapsedTime(elapsed)) << lastCallFailure().text();
        EXPECT_EQ(elapsed, 9U);
    }
}

TEST_F(HostileServer, ThatCountsMoreThanItSendsCostsNoMemory)
{
    for (unsigned char const most : Octets{0x00, 0x7f, 0xff}) { // counts of 16 777 215 and more
        auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
        support::FakePeer const peer(path, [most](Descriptor const& connection) {
            Octets reply = replyTo(connection.readMessage());
            reply[16] = most;
            reply[17] = reply[18] = reply[19] = 0xff;
            connection.write(reply);
            connection.isClosedByPeer();
        });
        trs::LogCapture const log;
        TipprmiSequence<PerformanceServiceClient::IdentData_t> data;
        data.setLength(3);
        EXPECT_TRUE(proxy.getAdapterData({}, data)) << "what was read before stays";
        EXPECT_EQ(data.getLength(), 0U);
        EXPECT_TRUE(log.contains("Unmarshall error on cc=0xEABDD29F, mc=2"));
        trs::Broker::instance().stop();
        ::unlink(path.c_str());
    }
}

TEST_F(HostileServer, ThatRefusesIsQuoted)
{
    struct Case {
        Octets length;
        std::string reason;
        std::string told;
    };
    Case const cases[] = {
        {{0, 0, 0, 11}, "go\x1b[2J away", "go\\x1b[2J away"},
        {{0, 0, 0, 0}, "", ""},
        {{0, 0, 0, 12}, "go away", "the connection was closed before a greeting came"},
        {{0, 0, 4, 1}, "go away", "what answers there is no broker"},
        {{0xff, 0xff, 0xff, 0xff}, "go away", "what answers there is no broker"},
    };
    for (Case const& one : cases) {
        auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
        support::FakePeer const peer(
            path,
            [&](Descriptor const& connection) {
                Octets refusal = support::greeting;
                refusal.back() = 2;
                refusal.insert(refusal.end(), one.length.begin(), one.length.end());
                refusal.insert(refusal.end(), one.reason.begin(), one.reason.end());
                connection.write(refusal);
            },
            false);
        unsigned long elapsed = 0;
        EXPECT_FALSE(proxy.getElapsedTime(elapsed));
        EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::notConnected);
        EXPECT_EQ(lastCallFailure().reason, one.told);
        ::unlink(path.c_str());
    }
}

// Whatever the call waits for: an answer, a greeting, or a place in the queue of those who want to connect.
TEST_F(HostileServer, ThatIsRemovedIsNotWaitedFor)
{
    trs::Broker::setDeadline(std::chrono::minutes(10));
    std::atomic<bool> isCalled = false;
    auto const hang = [&isCalled](Descriptor const& connection) {
        isCalled = true;
        connection.read(1000); // more than it will be sent
    };
    auto const expectRelease = [&] {
        unsigned long elapsed = 0;
        auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
        std::string reason;
        std::thread caller([&] {
            EXPECT_FALSE(proxy.getElapsedTime(elapsed));
            reason = lastCallFailure().reason;
        });
        while (!isCalled) {
            std::this_thread::yield();
        }
        trs::Broker::instance().removePeers();
        caller.join();
        EXPECT_THAT(reason, testing::StartsWith("the peer was removed"));
        isCalled = false;
    };
    for (bool const greets : {true, false}) {
        support::FakePeer const mute(path, hang, greets);
        expectRelease();
        ::unlink(path.c_str());
    }
    Descriptor const full(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un const address = support::addressOf(path);
    EXPECT_EQ(::bind(full.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(full.get(), 0), 0);
    Descriptor const queued = support::connectTo(path, false);
    for (int i = 0; i < 20; ++i) { // the call has begun in some of them
        isCalled = true;
        expectRelease();
    }
}

// Many that did would keep the server from accepting any.
TEST_F(HostileServer, IsNotAskedAgainAndAgainWhileItsQueueIsFull)
{
    Descriptor const full(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un const address = support::addressOf(path);
    EXPECT_EQ(::bind(full.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(full.get(), 0), 0);
    Descriptor const queued = support::connectTo(path, false);
    auto const proxy = support::boundTo<PerformanceServiceClient>(peerAt("unix:" + path), "P");
    auto const sleeps = [] {
        rusage usage{};
        ::getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nvcsw;
    };
    trs::CallDeadline const brief(std::chrono::milliseconds(400));
    long const before = sleeps();
    unsigned long elapsed = 0;
    EXPECT_FALSE(proxy.getElapsedTime(elapsed));
    EXPECT_EQ(lastCallFailure().kind, trs::CallFailure::Kind::deadline);
    EXPECT_LT(sleeps() - before, 60);
}

} // namespace
