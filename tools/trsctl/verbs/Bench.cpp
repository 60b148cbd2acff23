// trsctl bench: how fast a unit answers.
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Histogram.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <latch>
#include <memory>
#include <mutex>
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
        : words_(words), object_(object), operation_(operation), in_(std::move(in)), ready_(words.threads + 1)
    {
    }

    // One thread's calls, from the common beginning on.
    void work()
    {
        ready_.arrive_and_wait();
        tools::Histogram durations;
        for (unsigned long number = begun_++; number < words_.count && !isOver(); number = begun_++) {
            if (words_.rate > 0) {
                std::this_thread::sleep_until(
                    begin_ + std::chrono::duration_cast<Clock::duration>(
                                 std::chrono::duration<double>(static_cast<double>(number) / words_.rate)));
            }
            TreflectHandlerState const running;
            auto const start = Clock::now();
            Outcome const outcome = catalogue::call(object_, operation_, in_);
            auto const duration = Clock::now() - start;
            if (outcome.kind == Outcome::Kind::failed && Interrupt::came()) {
                break; // which is why it failed
            }
            durations.add(std::chrono::nanoseconds(duration).count());
            refused_ += outcome.kind == Outcome::Kind::refused ? 1 : 0;
            failed_ += outcome.kind == Outcome::Kind::failed ? 1 : 0;
            ++done_;
        }
        std::lock_guard const lock(mutex_);
        durations_.add(durations);
        end_ = Clock::now();
        ++ended_;
        changed_.notify_one();
    }
    // Has the threads begin, and shows how far they are until all have ended.
    void begin()
    {
        begin_ = Clock::now();
        ready_.arrive_and_wait();
        tools::Progress progress("calls");
        std::unique_lock lock(mutex_);
        while (!changed_.wait_for(lock, progressInterval, [this] { return ended_ == words_.threads; })) {
            if (words_.seconds > 0) {
                auto const passed = std::chrono::duration<double>(Clock::now() - begin_).count();
                progress.show(static_cast<std::size_t>(passed), static_cast<std::size_t>(words_.seconds));
            } else {
                progress.show(done_, words_.count);
            }
        }
    }
    Value result() const
    {
        double const seconds = std::chrono::duration<double>(end_ - begin_).count();
        Value spread;
        for (auto const& [name, share] : std::initializer_list<std::pair<char const*, double>>{
                 {"least", 0}, {"p50", 0.5}, {"p90", 0.9}, {"p99", 0.99}, {"most", 1}}) {
            spread[name] = durations_.quantile(share);
        }
        return {{"calls", durations_.count()},
                {"refused", refused_.load()},
                {"failed", failed_.load()},
                {"seconds", std::round(seconds * 1e6) / 1e6},
                {"callsPerSecond", std::llround(static_cast<double>(durations_.count()) / seconds)},
                {"microseconds", std::move(spread)}};
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
    std::latch ready_; // the threads, and `begin_`
    Clock::time_point begin_;
    std::atomic<unsigned long> begun_ = 0;
    std::atomic<unsigned long> done_ = 0;
    std::atomic<unsigned long> refused_ = 0;
    std::atomic<unsigned long> failed_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    tools::Histogram durations_; // of threads that have ended
    Clock::time_point end_;
    unsigned ended_ = 0;
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
    noteLimits(*operation, in);
    {
        TreflectHandlerState const running;
        Outcome const first = catalogue::call(target.object, *operation, in);
        if (first.kind == Outcome::Kind::failed || first.kind == Outcome::Kind::wrong) {
            return complain(target, *operation, first);
        }
    }
    Interrupt const interrupt;
    Load load(words, target.object, *operation, in);
    std::vector<std::thread> threads;
    threads.reserve(words.threads);
    for (unsigned i = 0; i < words.threads; ++i) {
        threads.emplace_back([&load] { load.work(); });
    }
    load.begin();
    std::ranges::for_each(threads, &std::thread::join);
    writeResults(load.result(), options.format);
    return load.hasFailures() ? ExitCode::malformedReply : ExitCode::good;
}

} // namespace

void addBenchVerbs(Program& program)
{
    auto const words = std::make_shared<BenchWords>();
    program.add({.name = "bench",
                 .help = "Measure how fast calls are answered; an interrupt ends it with what was measured",
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
