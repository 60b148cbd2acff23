// What the benchmarks print: one line per work, the limit and ours side by side.
#pragma once

#include <string>

namespace bench {

// What ours should be, held against the limit that was measured in the same run.
struct Aim {
    enum Kind {
        none,    // for information
        ratio,   // ours takes at most `value` times the limit's time
        surplus, // ours takes at most `value` seconds more than the limit
        rate,    // ours does at least `value` times the limit's calls per second
        most,    // ours takes at most `value` seconds
    };
    Kind kind = none;
    double value = 0;
};

struct Figure {
    std::string work;
    double limit; // seconds; 0: there is none
    double ours;  // seconds
    Aim aim = {};
};

// Something that is counted: ours, beside what it was without the work.
struct Count {
    std::string what;
    long without;
    long ours;
    char const* unit; // of all
    long least;       // what ours should be; 0: no bound
    long most;        // 0: no bound
};

void printHeading();
void print(Figure const& figure);
void printCount(Count const& count);

} // namespace bench
