// How far long work has come, for a person at a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace trs::tools {

// Draws a bar on standard error while the work takes longer than a moment; nothing when that is no terminal. The line
// is cleared at the end.
class Progress {
public:
    explicit Progress(std::string what);
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;
    ~Progress() { clear(); }

    // `total` may grow as the work is known better.
    void show(std::size_t done, std::size_t total);
    // Before something else is written.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string const what_;
    bool const isTerminal_;
    bool isDrawn_ = false;
    Clock::time_point next_;
};

} // namespace trs::tools
