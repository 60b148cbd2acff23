// trsctl bench: how fast a unit answers.
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Progress.h"
#include "tools/support/Quantiles.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <atomic>
#include <fmt/format.h>
#include <memory>
#include <thread>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;
using Clock = std::chrono::steady_clock;

constexpr unsigned long mostCalls = 10'000'000;
constexpr unsigned mostThreads = 256;
constexpr std::chrono::milliseconds progressInterval{50};

struct BenchWords {
    std::string object;
    std::string operation;
    std::vector<std::string> arguments;
    unsigned long count = 10'000;
    double seconds = 0; // 0: until `count` calls are made
    unsigned threads = 1;
    double rate = 0; // calls a second of all threads; 0: as many as there can be
};

// What all threads do together.
class Load {
public:
    Load(BenchWords const& words, TipprmiObjectClient const& object, catalogue::Operation const& operation,
         std::vector<Value> in)
        : words_(words), object_(object), operation_(operation), in_(std::move(in)), begin_(Clock::now())
    {
    }

    // One thread's calls; their durations in nanoseconds.
    std::vector<std::int64_t> work()
    {
        std::vector<std::int64_t> durations;
        for (unsigned long number = begun_++; number < words_.count && !isOver(); number = begun_++) {
            if (words_.rate > 0) {
                std::this_thread::sleep_until(
                    begin_ + std::chrono::duration_cast<Clock::duration>(
                                 std::chrono::duration<double>(static_cast<double>(number) / words_.rate)));
            }
            TreflectHandlerState const running;
            auto const start = Clock::now();
            Outcome const outcome = catalogue::call(object_, operation_, in_);
            durations.push_back(std::chrono::nanoseconds(Clock::now() - start).count());
            refused_ += outcome.kind == Outcome::Kind::refused ? 1 : 0;
            failed_ += outcome.kind == Outcome::Kind::failed ? 1 : 0;
            ++done_;
        }
        ++ended_;
        return durations;
    }
    void showProgress()
    {
        tools::Progress progress("calls");
        while (ended_ < words_.threads) {
            std::this_thread::sleep_for(progressInterval);
            if (words_.seconds > 0) {
                auto const passed = std::chrono::duration<double>(Clock::now() - begin_).count();
                progress.show(static_cast<std::size_t>(passed), static_cast<std::size_t>(words_.seconds));
            } else {
                progress.show(done_, words_.count);
            }
        }
    }
    Value result(std::vector<std::int64_t> durations) const
    {
        double const seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
        std::size_t const count = durations.size();
        std::vector<std::string> const spread = tools::quantiles(std::move(durations), {0, 0.5, 0.9, 0.99, 1});
        return {
            {"calls", count},
            {"refused", refused_.load()},
            {"failed", failed_.load()},
            {"seconds", fmt::format("{:.3f}", seconds)},
            {"callsPerSecond", fmt::format("{:.0f}", static_cast<double>(count) / seconds)},
            {"microseconds",
             {{"least", spread[0]}, {"p50", spread[1]}, {"p90", spread[2]}, {"p99", spread[3]}, {"most", spread[4]}}}};
    }
    bool hasFailures() const { return failed_ != 0; }

private:
    bool isOver() const
    {
        return Interrupt::came() ||
               (words_.seconds > 0 && Clock::now() - begin_ > std::chrono::duration<double>(words_.seconds));
    }

    BenchWords const& words_;
    TipprmiObjectClient const object_;
    catalogue::Operation const& operation_;
    std::vector<Value> const in_;
    Clock::time_point const begin_;
    std::atomic<unsigned long> begun_ = 0;
    std::atomic<unsigned long> done_ = 0;
    std::atomic<unsigned long> refused_ = 0;
    std::atomic<unsigned long> failed_ = 0;
    std::atomic<unsigned> ended_ = 0;
};

ExitCode bench(Program::Options const& options, BenchWords const& words)
{
    Target target;
    if (ExitCode const code = findTarget(options, words.object, target); code != ExitCode::good) {
        return code;
    }
    catalogue::Operation const* const operation = findOperation(target, words.operation);
    std::vector<Value> in;
    if (operation == nullptr) {
        return ExitCode::usage;
    }
    if (ExitCode const code = readArguments(target, *operation, words.arguments, in); code != ExitCode::good) {
        return code;
    }
    {
        TreflectHandlerState const running;
        Outcome const first = catalogue::call(target.object, *operation, in);
        if (first.kind == Outcome::Kind::failed || first.kind == Outcome::Kind::wrong) {
            return complain(target, *operation, first);
        }
    }
    Load load(words, target.object, *operation, in);
    std::vector<std::vector<std::int64_t>> durations(words.threads);
    std::vector<std::thread> threads;
    threads.reserve(words.threads);
    for (std::vector<std::int64_t>& own : durations) {
        threads.emplace_back([&load, &own] { own = load.work(); });
    }
    load.showProgress();
    std::vector<std::int64_t> all;
    for (unsigned i = 0; i < words.threads; ++i) {
        threads[i].join();
        all.insert(all.end(), durations[i].begin(), durations[i].end());
    }
    writeResults(load.result(std::move(all)), options.format);
    return load.hasFailures() ? ExitCode::malformedReply : ExitCode::good;
}

} // namespace

void addBenchVerbs(Program& program)
{
    auto const words = std::make_shared<BenchWords>();
    program.add({.name = "bench",
                 .help = "Measure how fast calls are answered",
                 .example = "bench IpNode mtu --threads 4 --for 5",
                 .options =
                     {
                         Program::objectArgument(words->object),
                         {.name = "OPERATION",
                          .target = &words->operation,
                          .help = "The operation's name, or what it reads",
                          .isRequired = true},
                         Program::valuesArgument(words->arguments),
                         {.name = "--count",
                          .target = &words->count,
                          .help = "How many calls",
                          .type = "N",
                          .range = {{1, mostCalls}},
                          .showsDefault = true},
                         {.name = "--for",
                          .target = &words->seconds,
                          .help = "How long at most, in seconds",
                          .type = "S",
                          .range = {{0, 86400}}},
                         {.name = "--threads",
                          .target = &words->threads,
                          .help = "How many threads call, each over a connection of its own",
                          .type = "N",
                          .range = {{1, mostThreads}},
                          .showsDefault = true},
                         {.name = "--rate",
                          .target = &words->rate,
                          .help = "How many calls a second in all; as many as there can be unless said",
                          .type = "R",
                          .range = {{0, 1e7}}},
                     }},
                [words](Program::Options const& options) { return bench(options, *words); });
}

} // namespace trs::ctl
