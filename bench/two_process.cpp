// What calls of another process's objects cost, against the bare system calls that carry as many bytes.
#include "bench/support/BenchNodeClient.h"
#include "bench/support/BrokerSide.h"
#include "bench/support/Figures.h"
#include "bench/support/Processes.h"
#include "bench/support/Program.h"
#include "bench/support/RawSockets.h"
#include "bench/support/Rounds.h"

#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using bench::Aim;

struct Work {
    char const* name;
    char const* text;
    raw::Reply reply = raw::Reply::number;
    raw::Waiting waiting = raw::Waiting::blocked; // the limit's
    bool isBusy = false;                          // ours waits awake for a moment
    bool isOnOneProcessor = true;
    bool isTcp = false;
    int threads = 1;
    Aim aim = {};
};

Work const works[] = {
    {.name = "get", .text = "get a number, one processor", .aim = {Aim::ratio, 1.08}},
    {.name = "get-busy",
     .text = "get a number, both processors, waiting busily",
     .waiting = raw::Waiting::yielding,
     .isBusy = true,
     .isOnOneProcessor = false,
     .aim = {Aim::ratio, 1.25}},
    {.name = "get-free", .text = "get a number, both processors, sleeping", .isOnOneProcessor = false},
    {.name = "table", .text = "get 1000 records, one processor", .reply = raw::Reply::table, .aim = {Aim::ratio, 1.25}},
    {.name = "table-busy",
     .text = "get 1000 records, both processors, waiting busily",
     .reply = raw::Reply::table,
     .waiting = raw::Waiting::yielding,
     .isBusy = true,
     .isOnOneProcessor = false},
    {.name = "threads",
     .text = "8 threads get numbers, both processors, sleeping",
     .isOnOneProcessor = false,
     .threads = 8,
     .aim = {Aim::rate, 0.95}},
    {.name = "threads-busy",
     .text = "8 threads, both processors; ours waits busily",
     .isBusy = true,
     .isOnOneProcessor = false,
     .threads = 8,
     .aim = {Aim::rate, 0.95}},
    {.name = "threads-16",
     .text = "16 threads, both processors; ours waits busily",
     .isBusy = true,
     .isOnOneProcessor = false,
     .threads = 16,
     .aim = {Aim::rate, 0.95}},
    {.name = "get-tcp", .text = "get a number over TCP, one processor", .isTcp = true},
};

void measure(Work const& work, bench::Place const& place)
{
    if (work.isOnOneProcessor) {
        bench::useOneProcessor();
    }
    int const port = 20000 + 2 * static_cast<int>(getpid() % 10000);
    auto const tcp = [](int number) { return "tcp:127.0.0.1:" + std::to_string(number); };
    std::string const rawEndpoint = work.isTcp ? tcp(port) : place.endpoint("raw");
    std::string const ourEndpoint = work.isTcp ? tcp(port + 1) : place.endpoint("ours");
    bool const isTable = work.reply == raw::Reply::table;

    bench::ServerProcess const rawServer(
        bench::rawServer(rawEndpoint, work.waiting == raw::Waiting::yielding, isTable));
    bench::ServerProcess const ourServer(bench::ourServer({ourEndpoint}, work.isBusy));
    ours::use(ourEndpoint, work.isBusy);

    bench::Side limit{rawServer, [&]() -> bench::Call {
                          auto const connection =
                              std::make_shared<raw::Connection>(rawEndpoint, work.waiting, work.reply);
                          return [connection] { connection->call(); };
                      }};
    bench::Side ours{ourServer, [&] { return isTable ? ours::tableCall() : ours::numberCall(); }};
    bench::takeTurns(limit, ours, work.threads, place.effort);
    bench::print({work.text, limit.best, ours.best, work.aim});
}

} // namespace

// CLI11 throws when the options of a program contradict each other, which would be a fault of this file.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    std::vector<bench::Work> named;
    for (Work const& work : works) {
        named.push_back({work.name, [&work](bench::Place const& place) { measure(work, place); }});
    }
    return bench::run(argc, argv,
                      "Measures calls of another process's objects against the bare system calls, round by round in "
                      "turns,\nand prints the best round of each.",
                      {}, named);
}
