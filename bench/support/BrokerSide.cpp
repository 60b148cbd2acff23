#include "bench/support/BrokerSide.h"

#include "bench/support/BenchNodeClient.h"
#include "bench/support/RawSockets.h"
#include "broker/Broker.h"
#include "broker/framing/Message.h"
#include "rmi/Servant.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using Table = TipprmiSequence<BenchNodeClient::Addresses>;

constexpr char const* node = "bench/node";

[[noreturn]] void die(std::string const& why)
{
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, why.c_str());
    std::exit(1);
}

void require(std::string const& why)
{
    if (!why.empty()) {
        die(why);
    }
}

void setWaiting(bool isBusy) { trs::Broker::setBusyWait(std::chrono::microseconds(isBusy ? 50 : 0)); }

} // namespace

void ours::serve(std::vector<std::string> const& endpoints, bool isBusy)
{
    setWaiting(isBusy);
    Table const table = bench::makeTable();
    Servant servant{TipprmiOID(node)};
    servant.on<&BenchNodeClient::getNumber>([](long& number) {
        number = 1500;
        return GetClient::OK;
    });
    servant.on<&BenchNodeClient::getTable>([&table](road::Lent<Table>& answer) {
        answer.lend(table);
        return GetClient::OK;
    });
    for (std::string const& endpoint : endpoints) {
        require(trs::Broker::instance().serve(endpoint));
    }
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}

TreflectORB const* ours::addPeer(std::string const& endpoint)
{
    TreflectORB const* peer = nullptr;
    require(trs::Broker::instance().addPeer(endpoint, &peer));
    return peer;
}

BenchNodeClient ours::nodeAt(TreflectORB const* peer)
{
    BenchNodeClient proxy;
    proxy.TipprmiObjectClient::connect(peer, TipprmiOID(node));
    return proxy;
}

TreflectORB const* ours::use(std::string const& endpoint, bool isBusy)
{
    setWaiting(isBusy);
    TreflectORB const* const peer = addPeer(endpoint);
    BenchNodeClient const proxy = nodeAt(peer);
    Table received;
    if (proxy.getTable(received) != GetClient::OK || !(received == bench::makeTable())) {
        die("the received table is not the table");
    }
    return peer;
}

std::function<void()> ours::numberCall(TreflectORB const* peer)
{
    return [proxy = nodeAt(peer)] {
        long number = 0;
        if (proxy.getNumber(number) != GetClient::OK || number != 1500) {
            die("a call failed");
        }
    };
}

bool ours::isAnswered(TreflectORB const* peer)
{
    long number = 0;
    return nodeAt(peer).getNumber(number) == GetClient::OK && number == 1500;
}

void ours::subscribe(std::string const& endpoint, Listener& listener)
{
    TreflectMetaOperation const getNumber{"getNumber", OperationRow<&BenchNodeClient::getNumber>::index,
                                          Operations<BenchNodeClient>::classId};
    if (!TreflectOperation(nodeAt(addPeer(endpoint)), getNumber, true).postObserve(&listener)) {
        die("a subscription failed");
    }
}

std::function<void()> ours::tableCall()
{
    return [proxy = BenchNodeClient(TipprmiOID(node)), received = Table()]() mutable {
        if (proxy.getTable(received) != GetClient::OK || received.getLength() != bench::tableLength) {
            die("a call failed");
        }
    };
}

void ours::hold(std::string const& endpoint, int count)
{
    std::vector<int> sockets;
    for (int i = 0; i < count; ++i) {
        int const socket = raw::open(endpoint);
        trs::Greeting greeting = trs::makeGreeting();
        raw::sendAll(socket, greeting.data(), greeting.size());
        raw::receiveAll(socket, raw::Waiting::blocked, greeting.data(), greeting.size());
        sockets.push_back(socket);
    }
    auto const kept = std::ranges::count_if(sockets, [](int socket) {
        char byte = 0;
        return recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
    });
    std::printf("%ld\n", static_cast<long>(kept));
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}
