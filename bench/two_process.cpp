// What calls of another process's objects cost, against the bare system calls that carry as many bytes.
#include "bench/support/BenchNodeClient.h"
#include "bench/support/BrokerSide.h"
#include "bench/support/Figures.h"
#include "bench/support/Processes.h"
#include "bench/support/RawSockets.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using bench::Aim;
using Seconds = std::chrono::duration<double>;

struct Work {
    char const* name;
    char const* text;
    raw::Reply reply = raw::Reply::number;
    raw::Waiting waiting = raw::Waiting::blocked; // ours waits busily where the limit yields
    bool isOnOneProcessor = true;
    bool isTcp = false;
    int threads = 1;
    Aim aim = {};
};

Work const works[] = {
    {.name = "get", .text = "get a number, one processor", .aim = {Aim::ratio, 1.15}},
    {.name = "get-busy",
     .text = "get a number, both processors, waiting busily",
     .waiting = raw::Waiting::yielding,
     .isOnOneProcessor = false,
     .aim = {Aim::ratio, 1.5}},
    {.name = "get-free", .text = "get a number, both processors, sleeping", .isOnOneProcessor = false},
    {.name = "table", .text = "get 1000 records, one processor", .reply = raw::Reply::table, .aim = {Aim::ratio, 1.5}},
    {.name = "table-busy",
     .text = "get 1000 records, both processors, waiting busily",
     .reply = raw::Reply::table,
     .waiting = raw::Waiting::yielding,
     .isOnOneProcessor = false},
    {.name = "threads",
     .text = "8 threads get numbers, both processors, sleeping",
     .isOnOneProcessor = false,
     .threads = 8,
     .aim = {Aim::rate, 0.8}},
    {.name = "get-tcp", .text = "get a number over TCP, one processor", .isTcp = true},
};

struct Effort {
    int rounds = 15;
    double seconds = 0.2; // of one round
};

// What one calling thread does over and over, made in that thread.
using Call = std::function<void()>;
using Open = std::function<Call()>;

constexpr int warmUpCalls = 100;

// Seconds per call of one round, `calls` by each thread: from the first thread's start to the last one's end.
double measured(Open const& open, int threads, long calls)
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
            Call const call = open();
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
    Seconds const elapsed = last->end - first->begin;
    return elapsed.count() / (static_cast<double>(calls) * threads);
}

// The limit or ours: a server and how it is called.
struct Side {
    bench::ServerProcess const& server;
    Open open;
    long calls = 0;
    double best = 1;

    void runRound(int threads, double seconds)
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
};

void measure(Work const& work, Effort const& effort, std::filesystem::path const& directory)
{
    if (work.isOnOneProcessor) {
        bench::useOneProcessor();
    }
    bool const isBusy = work.waiting == raw::Waiting::yielding;
    auto const endpoint = [&](char const* name, int port) {
        return work.isTcp ? "tcp:127.0.0.1:" + std::to_string(port) : "unix:" + (directory / name).string();
    };
    int const port = 20000 + 2 * static_cast<int>(getpid() % 10000);
    std::string const rawEndpoint = endpoint("raw", port);
    std::string const ourEndpoint = endpoint("ours", port + 1);

    bench::ServerProcess const rawServer({"serve-raw", rawEndpoint, isBusy ? "--yielding" : "--blocked",
                                          work.reply == raw::Reply::table ? "--table" : "--number"});
    bench::ServerProcess const ourServer({"serve", ourEndpoint, isBusy ? "--busy" : "--sleeping"});
    rawServer.pause();
    ours::use(ourEndpoint, isBusy);

    Side limit{rawServer, [&]() -> Call {
                   auto const connection = std::make_shared<raw::Connection>(rawEndpoint, work.waiting, work.reply);
                   return [connection] { connection->call(); };
               }};
    Side ours{ourServer, work.reply == raw::Reply::table ? ours::tableCall : ours::numberCall};
    for (int i = 0; i < effort.rounds; ++i) {
        limit.runRound(work.threads, effort.seconds);
        ours.runRound(work.threads, effort.seconds);
    }
    bench::print({work.text, limit.best, ours.best, work.aim});
}

} // namespace

// CLI11 throws when the options of a program contradict each other, which would be a fault of this file.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    CLI::App app("Measures calls of another process's objects against the bare system calls, round by round in turns,\n"
                 "and prints the best round of each.");
    Effort effort;
    std::vector<std::string> only;
    std::map<std::string, Work const*> byName;
    for (Work const& work : works) {
        byName.emplace(work.name, &work);
    }
    app.add_option("--rounds", effort.rounds, "Rounds of each")->check(CLI::PositiveNumber)->capture_default_str();
    app.add_option("--seconds", effort.seconds, "Length of a round")->check(CLI::PositiveNumber)->capture_default_str();
    app.add_option("--only", only, "Only these works")->check(CLI::IsMember(byName));

    // What this program is to itself.
    std::string name;
    std::string endpoint;
    bool isBusy = false;
    bool isTable = false;
    CLI::App* const one = app.add_subcommand("measure", "One work, without heading")->group("");
    one->add_option("work", name)->required();
    CLI::App* const rawServer = app.add_subcommand("serve-raw")->group("");
    rawServer->add_option("endpoint", endpoint)->required();
    rawServer->add_flag("--yielding,!--blocked", isBusy);
    rawServer->add_flag("--table,!--number", isTable);
    CLI::App* const ourServer = app.add_subcommand("serve")->group("");
    ourServer->add_option("endpoint", endpoint)->required();
    ourServer->add_flag("--busy,!--sleeping", isBusy);
    CLI11_PARSE(app, argc, argv);

    if (*rawServer) {
        raw::serve(endpoint, isBusy ? raw::Waiting::yielding : raw::Waiting::blocked,
                   isTable ? raw::Reply::table : raw::Reply::number);
    }
    if (*ourServer) {
        ours::serve(endpoint, isBusy);
    }
    if (*one) {
        std::string pattern = (std::filesystem::temp_directory_path() / "two_process.XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            std::perror("two_process: no directory for sockets");
            return 1;
        }
        measure(*byName.at(name), effort, pattern);
        std::filesystem::remove_all(pattern);
        return 0;
    }

    std::printf("best of %d rounds of %g s each, %d processors\n", effort.rounds, effort.seconds, bench::processors());
    bench::printHeading();
    // Each in a process of its own, for the settings of one are not those of the next.
    int failures = 0;
    for (Work const& work : works) {
        if (only.empty() || std::find(only.begin(), only.end(), work.name) != only.end()) {
            failures += bench::runAgain({"--rounds", std::to_string(effort.rounds), "--seconds",
                                         std::to_string(effort.seconds), "measure", work.name}) != 0
                            ? 1
                            : 0;
        }
    }
    return failures == 0 ? 0 : 1;
}
