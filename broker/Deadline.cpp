#include "broker/Deadline.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <ctime>

namespace trs {

namespace {

constinit std::atomic<int> processDuration = 5000;
thread_local int threadDuration = 0; // 0: the process's

int milliseconds(std::chrono::milliseconds duration)
{
    // The upper end leaves room for sums.
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(duration.count(), 1, INT_MAX / 2));
}

} // namespace

Deadline::Deadline(std::chrono::milliseconds duration) : start_(now()), duration_(milliseconds(duration)) {}

int Deadline::remaining() const
{
    std::int64_t const left = start_ + duration_ - now();
    return left > 0 ? static_cast<int>(left) : 0;
}

std::int64_t Deadline::now()
{
    std::timespec time{};
#ifdef CLOCK_MONOTONIC_COARSE
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
#else
    ::clock_gettime(CLOCK_MONOTONIC, &time);
#endif
    return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1000000;
}

std::chrono::milliseconds Deadline::current()
{
    int const own = threadDuration;
    return std::chrono::milliseconds(own != 0 ? own : processDuration.load(std::memory_order_relaxed));
}

void Deadline::setDefault(std::chrono::milliseconds duration)
{
    processDuration.store(milliseconds(duration), std::memory_order_relaxed);
}

CallDeadline::CallDeadline(std::chrono::milliseconds duration) : outer_(threadDuration)
{
    threadDuration = milliseconds(duration);
}

CallDeadline::~CallDeadline() { threadDuration = outer_; }

} // namespace trs
