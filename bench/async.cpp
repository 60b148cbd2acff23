// What asynchronous calls cost, against synchronous ones and against the bare system calls that carry as many bytes.
#include "broker/Async.h"
#include "bench/support/BenchNodeClient.h"
#include "bench/support/BrokerSide.h"
#include "bench/support/Figures.h"
#include "bench/support/Processes.h"
#include "bench/support/Program.h"
#include "bench/support/RawSockets.h"

#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

using bench::Aim;
using bench::ServerProcess;

// Calls for numbers, of which each that ends begins another.
class Flow {
public:
    explicit Flow(TreflectORB const* peer) : proxy_(ours::nodeAt(peer)) {}

    // That many calls, so many of them in flight. Returns when the last one has ended.
    void run(int calls, int inFlight)
    {
        left_ = calls;
        running_ = calls;
        for (int i = 0; i < inFlight; ++i) {
            begin();
        }
        for (int running = running_; running != 0; running = running_) {
            running_.wait(running);
        }
    }

private:
    void begin()
    {
        if (left_.fetch_sub(1) <= 0) {
            return;
        }
        trs::asyncCall<&BenchNodeClient::getNumber>(proxy_, [this](std::error_code error, auto const& reply) {
            if (error || reply.template out<0>() != 1500) {
                std::fprintf(stderr, "async: a call failed\n");
                std::exit(1);
            }
            begin();
            if (running_.fetch_sub(1) == 1) {
                running_.notify_one();
            }
        });
    }

    BenchNodeClient const proxy_;
    std::atomic<int> left_ = 0;    // to begin
    std::atomic<int> running_ = 0; // that have not ended
};

constexpr int together = 64;

// One call after the other, against the same server.
void measureOne(bench::Place const& place, bool isOnOneProcessor)
{
    if (isOnOneProcessor) {
        bench::useOneProcessor();
    }
    ServerProcess const server(bench::ourServer({place.endpoint("ours")}, !isOnOneProcessor));
    TreflectORB const* const peer = ours::use(place.endpoint("ours"), !isOnOneProcessor);
    bench::Side limit{server, [=]() -> bench::Call {
                          return [call = ours::numberCall(peer)] {
                              for (int i = 0; i < together; ++i) {
                                  call();
                              }
                          };
                      }};
    bench::Side ours{
        server, [=]() -> bench::Call { return [flow = std::make_shared<Flow>(peer)] { flow->run(together, 1); }; }};
    bench::takeTurns(limit, ours, 1, place.effort);
    bench::print({isOnOneProcessor ? "get a number by callback : and wait, one processor"
                                   : "get a number by callback : and wait, both processors",
                  limit.best / together,
                  ours.best / together,
                  {Aim::ratio, 2}});
}

// Many at once over one connection: batches, as the limit has them, or without a pause.
void measureMany(bench::Place const& place, bool isFlow)
{
    ServerProcess const rawServer(bench::rawServer(place.endpoint("raw")));
    ServerProcess const ourServer(bench::ourServer({place.endpoint("ours")}));
    TreflectORB const* const peer = ours::use(place.endpoint("ours"), true);
    bench::Side limit{rawServer, [&]() -> bench::Call {
                          auto const connection = std::make_shared<raw::Connection>(
                              place.endpoint("raw"), raw::Waiting::blocked, raw::Reply::number);
                          return [connection] { connection->callAtOnce(together); };
                      }};
    int const batches = isFlow ? 16 : 1;
    bench::Side ours{ourServer, [=]() -> bench::Call {
                         return [=, flow = std::make_shared<Flow>(peer)] { flow->run(together * batches, together); };
                     }};
    bench::takeTurns(limit, ours, 1, place.effort);
    double const perCall = ours.best / (together * batches);
    bench::print({isFlow ? "get numbers, 64 always in flight" : "get numbers, 64 at once",
                  limit.best / together,
                  perCall,
                  {Aim::ratio, 3}});
    if (isFlow) {
        bench::printCount(
            {"  calls a second", std::lround(together / limit.best), std::lround(1 / perCall), "", 500000, 0});
    }
}

} // namespace

// CLI11 throws when the options of a program contradict each other, which would be a fault of this file.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    return bench::run(
        argc, argv,
        "Measures asynchronous calls of another process's objects, round by round in turns with what they are held\n"
        "against, and prints the best round of each.",
        {},
        {{"one", [](bench::Place const& place) { measureOne(place, true); }},
         {"one-busy", [](bench::Place const& place) { measureOne(place, false); }},
         {"batch", [](bench::Place const& place) { measureMany(place, false); }},
         {"flow", [](bench::Place const& place) { measureMany(place, true); }}});
}
