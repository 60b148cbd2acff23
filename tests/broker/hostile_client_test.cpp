// The server against clients that do not ask as they should: the connection ends, and everybody else is served.
#include "broker/framework/QelOperations.h"
#include "rmi/Servant.h"
#include "tests/support/Sockets.h"

#include <array>
#include <gmock/gmock.h>

namespace {

using support::Octets;

class HostileClient : public support::BrokerTest {
protected:
    HostileClient()
    {
        service.on<&QelLongClient::set>([this](long const& value) {
            last = value;
            return true;
        });
        proxy = support::boundTo<QelLongClient>(loopBack("unix:" + path), "S");
    }

    // set(5) on "S", as the wire's description has it.
    static Octets request()
    {
        return {0, 0, 0, 29, 1, 1, 0, 0, 0, 0, 0, 7,   0xa6, 0xd4, 0xe0, 0x92, 0,
                0, 0, 1, 0,  0, 0, 1, 0, 0, 0, 1, 'S', 0,    0,    0,    5};
    }
    static Octets acceptance() { return {0, 0, 0, 12, 2, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 1}; }

    Servant service{"S"};
    long last = 0;
    QelLongClient proxy;
};

TEST_F(HostileClient, AskingProperlyIsAnsweredToTheByte)
{
    support::Descriptor const client = support::connectTo(path);
    client.write(request());
    EXPECT_EQ(client.readMessage(), acceptance());
    EXPECT_EQ(last, 5);
    Octets two = request();
    Octets const one = request();
    two.insert(two.end(), one.begin(), one.end());
    client.write(two);
    EXPECT_EQ(client.readMessage(), acceptance());
    EXPECT_EQ(client.readMessage(), acceptance());
}

TEST_F(HostileClient, EachWrongBitIsAnsweredOrEndsTheConnection)
{
    trs::Broker::setDeadline(std::chrono::milliseconds(200));
    for (std::size_t bit = 0; bit < request().size() * 8; ++bit) {
        SCOPED_TRACE(bit);
        Octets damaged = request();
        support::flip(damaged, bit);
        support::Descriptor const client = support::connectTo(path);
        client.write(damaged);
        ::shutdown(client.get(), SHUT_WR);
        Octets const reply = client.readMessage(); // empty when the connection ended
        EXPECT_TRUE(reply.empty() || (reply.size() >= 12 && (reply[4] == 2 || reply[4] == 4 || reply[4] == 7)));
        ASSERT_TRUE(proxy.set(1000)) << "nobody else is served any more";
        EXPECT_EQ(last, 1000);
    }
}

TEST_F(HostileClient, AMessageCutAtAnyByteRunsNothing)
{
    for (std::size_t length = 0; length < request().size(); ++length) {
        support::Descriptor const client = support::connectTo(path);
        Octets cut = request();
        cut.resize(length);
        client.write(cut);
        ::shutdown(client.get(), SHUT_WR);
        EXPECT_TRUE(client.isClosedByPeer()) << length;
    }
    EXPECT_EQ(last, 0);
}

TEST_F(HostileClient, WhatIsNoMessageEndsTheConnectionAtOnce)
{
    Octets huge = request();
    huge[0] = huge[1] = huge[2] = huge[3] = 0xff;
    Octets longName = request();
    longName[24] = 0xff;
    for (Octets const& nonsense : {huge, Octets(12, 0), Octets(4096, 'x'), longName}) {
        support::Descriptor const client = support::connectTo(path);
        client.write(nonsense);
        EXPECT_TRUE(client.isClosedByPeer());
    }
    support::Descriptor const foreign = support::connectTo(path, false);
    foreign.write({'G', 'E', 'T', ' ', '/', ' ', 'H', 'T'});
    EXPECT_TRUE(foreign.isClosedByPeer());
    support::Descriptor const newer = support::connectTo(path, false);
    newer.write({'T', 'O', 'I', 'P', 0, 2, 0, 0});
    EXPECT_EQ(newer.read(9), support::greeting) << "it is told the version, and no more";
    EXPECT_TRUE(proxy.set(2));
}

TEST_F(HostileClient, ThoseWhoSendNothingDisturbNobody)
{
    std::vector<support::Descriptor> silent;
    for (int i = 0; i < 200; ++i) {
        silent.push_back(support::connectTo(path, i % 2 == 0)); // half of them do not even greet
    }
    for (long call = 0; call < 200; ++call) {
        ASSERT_TRUE(proxy.set(call));
    }
}

TEST_F(HostileClient, WhoDoesNotGreetOrFinishInTimeIsSentAway)
{
    trs::Broker::setDeadline(std::chrono::milliseconds(100));
    support::Descriptor const silent = support::connectTo(path, false);
    support::Descriptor const slow = support::connectTo(path);
    slow.write({0, 0, 0});
    EXPECT_TRUE(silent.isClosedByPeer());
    EXPECT_TRUE(slow.isClosedByPeer());
}

TEST_F(HostileClient, ASubscriberThatDoesNotListenIsSentAway)
{
    Octets subscribe = request();
    subscribe[4] = 5;
    subscribe[5] = 0;
    subscribe[3] = 25;
    subscribe.resize(29);
    support::Descriptor const deaf = support::connectTo(path);
    deaf.write(subscribe);
    EXPECT_EQ(deaf.readMessage().size(), 12U);
    for (long call = 0; call < 100000 && service.isObserved(); ++call) {
        ASSERT_TRUE(proxy.set(call));
    }
    EXPECT_FALSE(service.isObserved()) << "it still has a place";
    EXPECT_TRUE(proxy.set(1));
}

} // namespace
