#include "bench/support/BrokerSide.h"

#include "bench/support/BenchNodeClient.h"
#include "broker/Broker.h"
#include "rmi/Servant.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using Table = TipprmiSequence<BenchNodeClient::Addresses>;

constexpr char const* node = "bench/node";

[[noreturn]] void die(std::string const& why)
{
    std::fprintf(stderr, "two_process: %s\n", why.c_str());
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

void ours::serve(std::string const& endpoint, bool isBusy)
{
    setWaiting(isBusy);
    Table const table = bench::makeTable();
    Servant servant{TipprmiOID(node)};
    servant.on<&BenchNodeClient::getNumber>([](long& number) {
        number = 1500;
        return GetClient::OK;
    });
    servant.on<&BenchNodeClient::getTable>([&table](Table& answer) {
        answer = table;
        return GetClient::OK;
    });
    require(trs::Broker::instance().serve(endpoint));
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}

void ours::use(std::string const& endpoint, bool isBusy)
{
    setWaiting(isBusy);
    require(trs::Broker::instance().addPeer(endpoint));
    BenchNodeClient const proxy{TipprmiOID(node)};
    Table received;
    if (proxy.getTable(received) != GetClient::OK || !(received == bench::makeTable())) {
        die("the received table is not the table");
    }
}

std::function<void()> ours::numberCall()
{
    return [proxy = BenchNodeClient(TipprmiOID(node))] {
        long number = 0;
        if (proxy.getNumber(number) != GetClient::OK || number != 1500) {
            die("a call failed");
        }
    };
}

std::function<void()> ours::tableCall()
{
    return [proxy = BenchNodeClient(TipprmiOID(node)), received = Table()]() mutable {
        if (proxy.getTable(received) != GetClient::OK || received.getLength() != bench::tableLength) {
            die("a call failed");
        }
    };
}
