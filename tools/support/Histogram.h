// How durations are spread, in memory that does not grow with their number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace trs::tools {

// Counts durations in nanoseconds, in classes that are 1/64 of their values wide at most. The least and the greatest
// are kept as they are.
class Histogram {
public:
    void add(std::int64_t nanoseconds);
    void add(Histogram const& other);

    std::uint64_t count() const { return count_; }
    // The shortest duration that such a share of all, from 0 to 1, does not exceed (the nearest rank), in microseconds
    // and to a tenth; 0 when there are none.
    double quantile(double share) const;

private:
    static constexpr unsigned fineBits = 6;
    static constexpr std::size_t classes = (64 - fineBits) << fineBits;
    static std::size_t classOf(std::uint64_t value);
    static std::uint64_t middleOf(std::size_t place);

    std::array<std::uint64_t, classes> counts_{};
    std::uint64_t count_ = 0;
    std::int64_t least_ = 0;
    std::int64_t most_ = 0;
};

} // namespace trs::tools
