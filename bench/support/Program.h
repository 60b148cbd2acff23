// What the benchmarks with servers are as programs: works that are measured one by one, each in a process of its own,
// as the settings of one are not those of the next, and the servers of theirs.
#pragma once

#include "bench/support/Rounds.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace bench {

// Where a work has its sockets, and how it is measured.
struct Place {
    std::filesystem::path directory;
    Effort effort;
    int count = 0; // of what there are many of, in place of the usual number; 0: that

    std::string endpoint(std::string const& name) const { return "unix:" + (directory / name).string(); }
};

struct Work {
    std::string name;
    std::function<void(Place const& place)> measure;
};

// Runs the program. With `hasCount`, the user may choose the count.
int run(int argc, char** argv, std::string const& description, Effort effort, std::vector<Work> const& works,
        bool hasCount = false);

// The servers, as processes that run() has made for a work: the limit's, which waits yielding or blocked and answers
// with a number or a table; ours, which waits busily or sleeps; and who holds that many connections to one.
std::vector<std::string> rawServer(std::string const& endpoint, bool isYielding = false, bool isTable = false);
std::vector<std::string> ourServer(std::vector<std::string> const& endpoints, bool isBusy = true);
std::vector<std::string> holder(std::string const& endpoint, int count);

} // namespace bench
