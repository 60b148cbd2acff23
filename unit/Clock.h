// The time of the simulated unit.
#pragma once

#include <atomic>

namespace trs::sim {

// Stands still but for advance(), which is called under the run permission. What depends on the time finds out how much
// has passed when it is asked.
class Clock {
public:
    // Seconds since the unit began; may be asked by any thread.
    unsigned long now() const { return now_; }
    void advance(unsigned long seconds) { now_ += seconds; }
    // To a time that was: what has happened since then is to be undone by the caller.
    void turnBack(unsigned long time) { now_ = time; }

private:
    std::atomic<unsigned long> now_ = 0;
};

} // namespace trs::sim
