// What is counted while requests are answered.
#pragma once

#include "broker/ServerCounters.h"

#include <algorithm>
#include <functional>
#include <mutex>

namespace trs {

// Of one thread, so that counting a call costs next to nothing; a server's total is told of it now and then.
class Tally {
public:
    using Clock = std::chrono::steady_clock;

    void count(ReplyStatus outcome)
    {
        ++counted_.calls[static_cast<std::size_t>(outcome)];
        ++size_;
    }
    void countIn(std::size_t bytes) { counted_.bytesIn += bytes; }
    void countOut(std::size_t bytes) { counted_.bytesOut += bytes; }
    void time(std::chrono::nanoseconds taken)
    {
        auto const bucket = std::ranges::lower_bound(ServerCounters::bounds, taken) - ServerCounters::bounds.begin();
        ++counted_.times[static_cast<std::size_t>(bucket)];
        counted_.timed += taken;
    }
    // Calls since it was told.
    unsigned size() const { return size_; }

private:
    friend class Total;

    ServerCounters counted_;
    unsigned size_ = 0;
};

// From any thread.
class Total {
public:
    // Takes over what the tally holds, which begins anew.
    void add(Tally& tally)
    {
        std::lock_guard const lock(mutex_);
        ServerCounters const& more = tally.counted_;
        std::ranges::transform(total_.calls, more.calls, total_.calls.begin(), std::plus<>());
        std::ranges::transform(total_.times, more.times, total_.times.begin(), std::plus<>());
        total_.bytesIn += more.bytesIn;
        total_.bytesOut += more.bytesOut;
        total_.timed += more.timed;
        tally = Tally();
    }
    ServerCounters get() const
    {
        std::lock_guard const lock(mutex_);
        return total_;
    }

private:
    mutable std::mutex mutex_;
    ServerCounters total_;
};

} // namespace trs
