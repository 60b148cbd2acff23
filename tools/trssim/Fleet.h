// Many simulated units at once, each in a process of its own.
#pragma once

#include <string>

namespace trs::sim {

// What distinguishes a unit from the others: 0 when it is the only one, else its number from 1 on.
struct UnitNumber {
    unsigned number = 0;

    // `unix:PATH` becomes `unix:PATH-3`, `tcp:HOST:4000` becomes `tcp:HOST:4002`; port 0 stays. Of the only one, as is.
    std::string endpoint(std::string const& endpoint) const;
    // FILE becomes FILE-3.
    std::string file(std::string const& file) const;
};

class Fleet {
public:
    // Begins `count` processes, before there is another thread. Returns in each of them, with its number. In this one
    // it returns when all have ended, with number 0: after a signal, the command "stop", or the input's end when
    // `endsWithInput`, which end them.
    static UnitNumber begin(unsigned count, bool endsWithInput, int& exitCode);
};

} // namespace trs::sim
