// How long to wait between two attempts.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>

namespace trs {

// Any time up to a bound, which doubles with every failure: those who lost the same peer at one moment do not all come
// back at another.
class Backoff {
public:
    using Duration = std::chrono::milliseconds;
    using Random = std::function<std::uint64_t(std::uint64_t most)>;

    // The bound goes from `least` to `most`.
    Backoff(Duration least, Duration most, Random random) : least_(least), most_(most), random_(std::move(random)) {}

    // The time until the next attempt.
    Duration next()
    {
        Duration const bound = bound_;
        bound_ = std::min(2 * bound, most_);
        return Duration(random_(static_cast<std::uint64_t>(bound.count())));
    }
    // An attempt succeeded.
    void reset() { bound_ = least_; }

private:
    Duration const least_;
    Duration const most_;
    Random const random_;
    Duration bound_ = least_;
};

} // namespace trs
