// Log lines that somebody else can cause as often as they like.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace trs {

// Of the lines of one kind it logs the first at once, and of those that follow one a second, with their number. What is
// still counted then is told with the next line of any kind, and in the end. From any thread.
class RepeatedLines {
public:
    using Clock = std::chrono::steady_clock;

    explicit RepeatedLines(std::function<Clock::time_point()> now = &Clock::now);
    RepeatedLines(RepeatedLines const&) = delete;
    RepeatedLines& operator=(RepeatedLines const&) = delete;
    ~RepeatedLines();

    // A line consists of its kind and what differs among lines of this kind.
    void tell(int severity, std::string const& kind, std::string const& detail = {});

private:
    struct Kind {
        int severity;
        Clock::time_point since; // when one was logged last
        std::size_t count = 0;   // since then
        std::string last = {};
    };

    static void tellCount(Kind const& kind, Clock::time_point now);
    void tellOverdue(Clock::time_point now);

    std::function<Clock::time_point()> const now_;
    std::mutex mutex_;
    std::map<std::string, Kind> kinds_; // of the last second
};

} // namespace trs
