// What many connections, peers and clients cost.
#include "bench/support/BrokerSide.h"
#include "bench/support/Figures.h"
#include "bench/support/Processes.h"
#include "bench/support/Program.h"
#include "bench/support/RawSockets.h"
#include "bench/support/Rounds.h"

#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using bench::Aim;
using bench::ServerProcess;
using Clock = std::chrono::steady_clock;

bool waitUntil(std::function<bool()> const& isTrue)
{
    auto const end = Clock::now() + std::chrono::seconds(10);
    while (!isTrue()) {
        if (Clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

constexpr int busyThreads = 8;

// Two servers of the same kind, one of which has idle connections besides the busy ones.
void measureIdle(bench::Place const& place)
{
    int const count = place.count != 0 ? place.count : 10000;
    ServerProcess const alone(bench::ourServer({place.endpoint("alone")}));
    ServerProcess const crowded(bench::ourServer({place.endpoint("crowded")}));
    TreflectORB const* const toAlone = ours::use(place.endpoint("alone"), true);
    TreflectORB const* const toCrowded = ours::use(place.endpoint("crowded"), true);
    bench::Side limit{alone, [=] { return ours::numberCall(toAlone); }};
    bench::Side ours{crowded, [=] { return ours::numberCall(toCrowded); }};

    ServerProcess const holder(bench::holder(place.endpoint("crowded"), count));
    bench::takeTurns(limit, ours, busyThreads, place.effort);
    bench::print({"8 threads get numbers, " + std::to_string(count) + " others are connected",
                  limit.best,
                  ours.best,
                  {Aim::rate, 0.95}});
    bench::Usage const without = bench::usageOf(alone.id());
    bench::Usage const with = bench::usageOf(crowded.id());
    bench::printCount(
        {"  connections that the server has kept", 0, std::atol(holder.line().c_str()), "", count, count});
    bench::printCount({"  threads of the server", without.threads, with.threads, "", 0, 32});
    bench::printCount({"  more memory of the server", 0, (with.kibibytes - without.kibibytes) / 1024, " MB", 0, 40});
}

// One server at many endpoints, each of which is a peer of one client.
void measurePeers(bench::Place const& place)
{
    int const count = place.count != 0 ? place.count : 1000;
    std::vector<std::string> endpoints;
    endpoints.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        endpoints.push_back(place.endpoint("peer" + std::to_string(i)));
    }
    ServerProcess const server(bench::ourServer(endpoints));
    ours::use(endpoints.front(), true);
    bench::Usage const before = bench::usageOf(getpid());
    ours::Listener listener;
    auto const begin = Clock::now();
    for (std::string const& endpoint : endpoints) {
        ours::subscribe(endpoint, listener);
    }
    std::chrono::duration<double> const perPeer = (Clock::now() - begin) / count;
    bench::Usage const after = bench::usageOf(getpid());
    bench::print(
        {"a peer and a subscription there, " + std::to_string(count) + " one after the other", 0, perPeer.count(), {}});
    bench::printCount({"  threads of the client", before.threads, after.threads, "", 0, before.threads + 1});
    bench::printCount(
        {"  memory of the client for each", 0, (after.kibibytes - before.kibibytes) / count, " KiB", 0, 16});
    ours::numberCall(nullptr)();
    waitUntil([&] { return listener.told == count; });
    bench::printCount({"  peers that have told of a call", 0, listener.told, "", count, count});
}

// Seconds until the last of `count` threads, which begin at once, has returned from `act`.
double longest(int count, std::function<void()> const& act)
{
    std::barrier start(count + 1);
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    std::vector<Clock::time_point> ends(static_cast<std::size_t>(count));
    for (Clock::time_point& end : ends) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            act();
            end = Clock::now();
        });
    }
    Clock::time_point const begin = Clock::now();
    start.arrive_and_wait();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return std::chrono::duration<double>(std::ranges::max(ends) - begin).count();
}

// Each round has servers of its own, as only the first connections are of interest.
void measureCrowd(bench::Place const& place)
{
    int const count = place.count != 0 ? place.count : 1000;
    double best = 1e9;
    double worst = 0; // ours: it is a promise
    int fewest = count;
    for (int round = 0; round < place.effort.rounds; ++round) {
        std::string const suffix = std::to_string(round);
        std::string const rawEndpoint = place.endpoint("raw" + suffix);
        std::string const ourEndpoint = place.endpoint("ours" + suffix);
        {
            ServerProcess const server(bench::rawServer(rawEndpoint));
            best = std::min(best, longest(count, [&] {
                                raw::Connection(rawEndpoint, raw::Waiting::blocked, raw::Reply::number).call();
                            }));
        }
        ServerProcess const server(bench::ourServer({ourEndpoint}));
        TreflectORB const* const peer = ours::addPeer(ourEndpoint);
        std::atomic<int> answered = 0;
        worst = std::max(worst, longest(count, [&] { answered += ours::isAnswered(peer) ? 1 : 0; }));
        fewest = std::min(fewest, answered.load());
    }
    bench::print({std::to_string(count) + " clients at once, until the last is answered", best, worst, {Aim::most, 1}});
    bench::printCount({"  clients that were answered", 0, fewest, "", count, count});
}

} // namespace

// CLI11 throws when the options of a program contradict each other, which would be a fault of this file.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    return bench::run(argc, argv, "Measures what many connections, peers and clients cost.", {.rounds = 5},
                      {{"idle", measureIdle}, {"peers", measurePeers}, {"crowd", measureCrowd}}, true);
}
