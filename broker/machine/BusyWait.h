// Waiting awake for a short time, where putting a thread to sleep and waking it up would take longer.
#pragma once

#include <chrono>

namespace trs {

// The experience of one connection with waiting awake. While a wait is usually over within the bound, each begins with
// one; when it is not, or takes the processor from threads that could run, the connection goes to sleep at once and
// tries again now and then.
class BusyWait {
public:
    // How long a thread waits awake; 0 for not at all. Off in any case when there is only one processor.
    static void setBound(std::chrono::microseconds bound);

    // Calls `attempt` until it answers true or the bound is over. Between two calls other threads may run. False when
    // the thread had better sleep.
    template <class Attempt>
    bool wait(Attempt&& attempt)
    {
        if (!begin()) {
            return false;
        }
        Clock::time_point last = Clock::now();
        Clock::time_point const end = last + bound();
        bool isOver = false;
        bool isCrowded = false;
        while (!(isOver = attempt()) && !isCrowded && last < end) {
            letOthersRun();
            Clock::time_point const now = Clock::now();
            isCrowded = haveOthersRun(now - last);
            last = now;
        }
        finish(isOver && !isCrowded);
        return isOver;
    }

private:
    using Clock = std::chrono::steady_clock;

    static std::chrono::microseconds bound();
    static void letOthersRun();
    // In that time between two attempts, going by what they take alone.
    static bool haveOthersRun(Clock::duration time);
    bool begin();
    void finish(bool wasWorthIt);

    unsigned char misses_ = 0; // in a row
    unsigned short skips_ = 0; // waits to sleep through before the next try
};

} // namespace trs
