// What happens to a watched object, on its way from the broker's threads to whoever shows it.
#pragma once

#include "broker/NotificationGap.h"
#include "catalogue/Value.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace trs::ctl {

// Notifications, and in their places the gaps in which some may be missing: {"time", "object", "gap"}. A gap has the
// times "since" and "until" and how many were "dropped" because nobody took them here. Or the connection to a "unit"
// was "lost" at a time: then it comes twice, when it has begun without "until", and when it is over.
class Feed {
public:
    using Value = catalogue::Value;
    using Clock = std::chrono::steady_clock;

    explicit Feed(std::string object, std::size_t mostWaiting = 10'000)
        : object_(std::move(object)), mostWaiting_(mostWaiting)
    {
    }

    void put(Value notification);
    void tell(NotificationGap const& gap);

    // The next one; none when there is none until `end`, or an interrupt has come.
    std::optional<Value> take(std::optional<Clock::time_point> end);
    static bool isGap(Value const& event) { return event.contains("gap"); }

private:
    struct Dropped {
        NotificationGap::Time since;
        NotificationGap::Time until;
        std::size_t count = 0;
    };

    void putGap(Value gap);
    void putDropped();

    std::string const object_;
    std::size_t const mostWaiting_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Value> events_;
    std::optional<Dropped> dropped_; // after the events
};

} // namespace trs::ctl
