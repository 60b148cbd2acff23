// What carries messages: the assembler that cuts them, and connections without a socket.
#include "broker/CallFailure.h"
#include "broker/framework/QelOperations.h"
#include "broker/framing/Assembler.h"
#include "broker/transport/MemoryTransport.h"
#include "broker/transport/SocketChannel.h"
#include "rmi/Servant.h"
#include "tests/support/Sockets.h"

#include <arpa/inet.h>
#include <array>
#include <fstream>
#include <netinet/in.h>
#include <span>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using support::Octets;
using trs::Assembler;

Octets const unsubscribing{0, 0, 0, 8, 6, 0, 0, 0, 0, 0, 0, 1};
Octets const locating{0, 0, 0, 25, 3, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 'S'};

TEST(Assembler, CutsMessagesHoweverTheirBytesCome)
{
    Octets both = locating;
    both.insert(both.end(), unsubscribing.begin(), unsubscribing.end());
    for (std::size_t step = 1; step <= both.size(); ++step) {
        Assembler received;
        TipprmiStream message(0);
        std::vector<Octets> messages;
        Assembler::State state = received.begin(message);
        for (std::size_t at = 0; at < both.size() || state == Assembler::State::message;) {
            if (state == Assembler::State::message) {
                messages.emplace_back(message.data(), message.data() + message.size());
                state = received.begin(message);
                continue;
            }
            auto const room = received.room(message);
            std::size_t const count = std::min({step, room.size(), both.size() - at});
            std::copy_n(both.begin() + static_cast<std::ptrdiff_t>(at), count, room.begin());
            at += count;
            state = received.advance(message, count);
        }
        EXPECT_EQ(messages, (std::vector<Octets>{locating, unsubscribing})) << step;

        Assembler fed;
        message.clear();
        std::span<unsigned char const> rest(both);
        EXPECT_EQ(fed.feed(message, rest), Assembler::State::message);
        EXPECT_EQ(rest.size(), unsubscribing.size()) << "the next message's bytes are left";
    }
    Assembler assembler;
    TipprmiStream message(0);
    Octets const foreign{0xff, 0xff, 0xff, 0xff};
    std::span<unsigned char const> bytes(foreign);
    EXPECT_EQ(assembler.feed(message, bytes), Assembler::State::malformed);
}

class Memory : public support::BrokerTest {
protected:
    Servant service{"S"};
    long last = 0;
};

// What the system's own list of users says; the number of one that is not there.
std::string ownName()
{
    std::string const number = std::to_string(::geteuid());
    std::ifstream users("/etc/passwd");
    for (std::string line; std::getline(users, line);) {
        std::size_t const name = line.find(':');
        std::size_t const id = line.find(':', name + 1) + 1;
        if (line.substr(id, line.find(':', id) - id) == number) {
            return line.substr(0, name);
        }
    }
    return number;
}

TEST(Channels, KnowWhoTheOtherSideIs)
{
    using trs::Principal;
    std::array<int, 2> pair{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()), 0);
    trs::SocketChannel const other(pair[0]);
    Principal const user = trs::SocketChannel(pair[1]).principal();
    EXPECT_EQ(user.kind, Principal::Kind::user);
    EXPECT_EQ(user.text(), "user:" + ownName());
    EXPECT_GE(user.groups.size(), 1U);

    support::Descriptor const listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(::bind(listening.get(), any, size), 0);
    ASSERT_EQ(::listen(listening.get(), 1), 0);
    ASSERT_EQ(::getsockname(listening.get(), any, &size), 0);
    support::Descriptor const connecting(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::connect(connecting.get(), any, size), 0);
    Principal const nobody = trs::SocketChannel(::dup(connecting.get())).principal();
    EXPECT_EQ(nobody.text(), "anonymous");
    EXPECT_EQ(nobody.origin, "127.0.0.1:" + std::to_string(ntohs(address.sin_port)));

    EXPECT_EQ(trs::MemoryChannel::makePair().first->principal().text(), "process");
}

TEST_F(Memory, CarriesCallsAndNoDamage)
{
    service.on<&QelLongClient::set>([this](long const& value) {
        last = value;
        return true;
    });
    auto const proxy = support::boundTo<QelLongClient>(loopBack("memory:unit"), "S");
    EXPECT_TRUE(proxy.set(5));
    EXPECT_EQ(last, 5);
    EXPECT_NE(trs::Broker::instance().serve("memory:unit"), "") << "the name is taken";

    Octets const request{0, 0, 0, 29, 1, 1, 0, 0, 0, 0, 0, 7,   0xa6, 0xd4, 0xe0, 0x92, 0,
                         0, 0, 1, 0,  0, 0, 1, 0, 0, 0, 1, 'S', 0,    0,    0,    5};
    trs::Broker::setDeadline(std::chrono::milliseconds(200));
    trs::Endpoint endpoint;
    ASSERT_EQ(trs::Endpoint::parse("memory:unit", endpoint), "");
    for (std::size_t bit = 0; bit < request.size() * 8; ++bit) {
        trs::Deadline deadline;
        std::string why;
        auto const client = trs::MemoryDialer(endpoint).dial(0, deadline, trs::Cut(), why);
        ASSERT_NE(client, nullptr) << why;
        Octets damaged = support::greeting;
        damaged.insert(damaged.end(), request.begin(), request.end());
        support::flip(damaged, support::greeting.size() * 8 + bit);
        EXPECT_EQ(client->send(damaged.data(), damaged.size(), deadline), trs::Channel::Sent::all);
        client->endSending();
        std::array<unsigned char, 64> room{};
        std::size_t count = 0;
        while (client->receive(room.data(), room.size(), &deadline, count) == trs::Channel::Received::some) {
        }
        ASSERT_TRUE(proxy.set(1000)) << "nobody else is served any more, bit " << bit;
    }
}

} // namespace
