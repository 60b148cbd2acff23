#include "tools/trsctl/Feed.h"

#include "catalogue/Text.h"
#include "tools/trsctl/Interrupt.h"

#include <algorithm>

namespace trs::ctl {

namespace {

constexpr std::chrono::milliseconds interruptInterval{100}; // for an interrupt

} // namespace

// Under the lock, like the next one.
void Feed::putGap(Value gap)
{
    events_.push_back({{"time", catalogue::timestamp(std::chrono::system_clock::now())},
                       {"object", object_},
                       {"gap", std::move(gap)}});
    changed_.notify_one();
}

void Feed::putDropped()
{
    if (dropped_) {
        putGap({{"since", catalogue::timestamp(dropped_->since)},
                {"until", catalogue::timestamp(dropped_->until)},
                {"dropped", dropped_->count}});
        dropped_.reset();
    }
}

void Feed::put(Value notification)
{
    std::lock_guard const lock(mutex_);
    if (events_.size() < mostWaiting_) {
        putDropped();
        events_.push_back(std::move(notification));
    } else {
        auto const now = std::chrono::system_clock::now();
        dropped_ = dropped_.value_or(Dropped{now, now});
        dropped_->until = now;
        ++dropped_->count;
    }
    changed_.notify_one();
}

void Feed::tell(NotificationGap const& gap)
{
    Value value = {{"since", catalogue::timestamp(gap.since)}};
    if (gap.until) {
        value["until"] = catalogue::timestamp(*gap.until);
    }
    value["unit"] = gap.peer;
    value["lost"] = catalogue::timestamp(gap.lost);
    std::lock_guard const lock(mutex_);
    putDropped();
    putGap(std::move(value));
}

std::optional<Feed::Value> Feed::take(std::optional<Clock::time_point> end)
{
    std::unique_lock lock(mutex_);
    auto const isThere = [this] { return !events_.empty() || dropped_; };
    for (auto next = Clock::now(); !isThere();) {
        if (Interrupt::came() || (end && next >= *end)) {
            return std::nullopt;
        }
        next = end ? std::min(next + interruptInterval, *end) : next + interruptInterval;
        changed_.wait_until(lock, next, isThere);
    }
    if (events_.empty()) {
        putDropped();
    }
    Value event = std::move(events_.front());
    events_.pop_front();
    return event;
}

} // namespace trs::ctl
