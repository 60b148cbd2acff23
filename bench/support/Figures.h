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

void printHeading();
void print(Figure const& figure);

} // namespace bench
