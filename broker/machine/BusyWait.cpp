#include "broker/machine/BusyWait.h"

#include "broker/machine/Processors.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <sched.h>

namespace trs {

namespace {

constinit std::atomic<int> boundMicroseconds = 50;
// Threads of the process that wait awake. One processor is left for those that have something to do.
constinit std::atomic<unsigned> waitingThreads = 0;

// Between two attempts without anybody in between.
constinit std::atomic<std::chrono::steady_clock::rep> leastTime =
    std::numeric_limits<std::chrono::steady_clock::rep>::max();
// A switch to another thread and back takes more than this many times as long.
constexpr int switchFactor = 2;

constexpr unsigned char fewMisses = 2;
constexpr unsigned char mostMisses = 7;

} // namespace

void BusyWait::setBound(std::chrono::microseconds bound)
{
    boundMicroseconds.store(static_cast<int>(std::clamp<std::chrono::microseconds::rep>(bound.count(), 0, 1000000)),
                            std::memory_order_relaxed);
}

std::chrono::microseconds BusyWait::bound()
{
    return std::chrono::microseconds(boundMicroseconds.load(std::memory_order_relaxed));
}

void BusyWait::letOthersRun() { ::sched_yield(); }

bool BusyWait::haveOthersRun(Clock::duration time)
{
    Clock::rep const least = leastTime.load(std::memory_order_relaxed);
    if (time.count() < least) {
        leastTime.store(time.count(), std::memory_order_relaxed);
    }
    return time.count() / switchFactor > least;
}

bool BusyWait::begin()
{
    static unsigned const processors = processorCount();
    if (processors == 1 || boundMicroseconds.load(std::memory_order_relaxed) == 0) {
        return false;
    }
    if (skips_ != 0) {
        --skips_;
        return false;
    }
    if (waitingThreads.fetch_add(1, std::memory_order_relaxed) >= processors - 1) {
        waitingThreads.fetch_sub(1, std::memory_order_relaxed);
        return false;
    }
    return true;
}

void BusyWait::finish(bool wasWorthIt)
{
    waitingThreads.fetch_sub(1, std::memory_order_relaxed);
    if (wasWorthIt) {
        misses_ = 0;
        return;
    }
    misses_ = std::min<unsigned char>(static_cast<unsigned char>(misses_ + 1), mostMisses);
    if (misses_ >= fewMisses) {
        skips_ = static_cast<unsigned short>(1U << misses_);
    }
}

} // namespace trs
