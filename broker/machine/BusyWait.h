// Waiting awake for a short time, where putting a thread to sleep and waking it up would take longer.
#pragma once

#include <chrono>

namespace trs {

// The experience of one connection with waiting awake. While a wait is usually over within the bound, each begins with
// one; when it is not, the connection goes to sleep at once and tries again now and then.
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
        Clock::time_point const end = Clock::now() + bound();
        bool isOver = false;
        do {
            isOver = attempt();
        } while (!isOver && letOthersRun() && Clock::now() < end);
        finish(isOver);
        return isOver;
    }

private:
    using Clock = std::chrono::steady_clock;

    static std::chrono::microseconds bound();
    static bool letOthersRun();
    bool begin();
    void finish(bool isOver);

    unsigned char misses_ = 0; // in a row
    unsigned short skips_ = 0; // waits to sleep through before the next try
};

} // namespace trs
