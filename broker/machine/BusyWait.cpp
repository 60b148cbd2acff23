#include "broker/machine/BusyWait.h"

#include "broker/machine/Processors.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <sched.h>

namespace trs {

namespace {

constinit std::atomic<int> boundMicroseconds = 50;
// Threads of the process that wait awake. One processor is left for those that have something to do.
constinit std::atomic<unsigned> waitingThreads = 0;

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

bool BusyWait::letOthersRun()
{
    ::sched_yield();
    return true;
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

void BusyWait::finish(bool isOver)
{
    waitingThreads.fetch_sub(1, std::memory_order_relaxed);
    if (isOver) {
        misses_ = 0;
        return;
    }
    misses_ = std::min<unsigned char>(static_cast<unsigned char>(misses_ + 1), mostMisses);
    if (misses_ >= fewMisses) {
        skips_ = static_cast<unsigned short>(1U << misses_);
    }
}

} // namespace trs
