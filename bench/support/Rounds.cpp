#include "bench/support/Rounds.h"

#include <algorithm>
#include <barrier>
#include <chrono>
#include <thread>
#include <vector>

namespace {

constexpr int warmUpCalls = 100;

// Seconds per call of one round, `calls` by each thread: from the first thread's start to the last one's end.
double measured(bench::Open const& open, int threads, long calls)
{
    using Clock = std::chrono::steady_clock;
    struct Span {
        Clock::time_point begin;
        Clock::time_point end;
    };
    std::barrier start(threads);
    std::vector<Span> spans(static_cast<std::size_t>(threads));
    std::vector<std::thread> callers;
    callers.reserve(spans.size());
    for (Span& span : spans) {
        callers.emplace_back([&] {
            bench::Call const call = open();
            for (int i = 0; i < warmUpCalls; ++i) {
                call();
            }
            start.arrive_and_wait();
            span.begin = Clock::now();
            for (long i = 0; i < calls; ++i) {
                call();
            }
            span.end = Clock::now();
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    auto const first = std::ranges::min_element(spans, {}, &Span::begin);
    auto const last = std::ranges::max_element(spans, {}, &Span::end);
    std::chrono::duration<double> const elapsed = last->end - first->begin;
    return elapsed.count() / (static_cast<double>(calls) * threads);
}

} // namespace

void bench::Side::runRound(int threads, double seconds)
{
    server.resume();
    if (calls == 0) {
        calls = 200;
        double const perCall = measured(open, threads, calls);
        calls = std::max(10L, static_cast<long>(seconds / perCall / threads));
    }
    best = std::min(best, measured(open, threads, calls));
    server.pause();
}

void bench::takeTurns(Side& limit, Side& ours, int threads, Effort const& effort)
{
    limit.server.pause();
    if (&ours.server != &limit.server) {
        ours.server.pause();
    }
    for (int i = 0; i < effort.rounds; ++i) {
        limit.runRound(threads, effort.seconds);
        ours.runRound(threads, effort.seconds);
    }
}
