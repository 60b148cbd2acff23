// Log lines that somebody else can cause as often as they like.
#pragma once

#include "broker/machine/TimeAndChance.h"

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace trs {

// Of the lines of one kind it logs the first at once, and of those that follow one a second, with their number: when
// the next line of any kind comes, when tellDue() is called, or in the end. From any thread.
class RepeatedLines {
public:
    using Time = TimeAndChance::Time;
    // Something is counted that is due to be told then. Not called again until tellDue() has told everything.
    using Remind = std::function<void(Time due)>;

    explicit RepeatedLines(TimeAndChance timing = {}, Remind remind = {});
    RepeatedLines(RepeatedLines const&) = delete;
    RepeatedLines& operator=(RepeatedLines const&) = delete;
    ~RepeatedLines();

    // A line consists of its kind and what differs among lines of this kind.
    void tell(int severity, std::string const& kind, std::string const& detail = {});
    // Logs what is due by now. When the next is, if anything is still counted.
    std::optional<Time> tellDue();

private:
    struct Kind {
        int severity;
        Time since;            // when one was logged last
        std::size_t count = 0; // since then
        std::string last = {};
    };

    static void tellCount(Kind const& kind, Time now);
    void tellOverdue(Time now);

    TimeAndChance const timing_;
    Remind const remind_;
    std::mutex mutex_;
    bool isReminded_ = false;
    std::map<std::string, Kind> kinds_; // of the last second
};

} // namespace trs
