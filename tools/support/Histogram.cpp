#include "tools/support/Histogram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>

namespace trs::tools {

// Values below 64 have a class each; each power of two above has 64 classes, told apart by the bits behind the first.
std::size_t Histogram::classOf(std::uint64_t value)
{
    auto const width = static_cast<unsigned>(std::bit_width(value));
    if (width <= fineBits) {
        return value;
    }
    unsigned const shift = width - fineBits - 1;
    return (static_cast<std::size_t>(shift) << fineBits) + (value >> shift);
}

std::uint64_t Histogram::middleOf(std::size_t place)
{
    std::size_t const power = place >> fineBits;
    unsigned const shift = power > 0 ? static_cast<unsigned>(power - 1) : 0;
    std::uint64_t const first = (place - (static_cast<std::size_t>(shift) << fineBits)) << shift;
    return first + ((std::uint64_t{1} << shift) - 1) / 2;
}

void Histogram::add(std::int64_t nanoseconds)
{
    nanoseconds = std::max(nanoseconds, std::int64_t{0});
    least_ = count_ == 0 ? nanoseconds : std::min(least_, nanoseconds);
    most_ = std::max(most_, nanoseconds);
    ++counts_[classOf(static_cast<std::uint64_t>(nanoseconds))];
    ++count_;
}

void Histogram::add(Histogram const& other)
{
    if (other.count_ == 0) {
        return;
    }
    least_ = count_ == 0 ? other.least_ : std::min(least_, other.least_);
    most_ = std::max(most_, other.most_);
    count_ += other.count_;
    std::ranges::transform(counts_, other.counts_, counts_.begin(), std::plus<>());
}

double Histogram::quantile(double share) const
{
    constexpr double rounding = 1e-9; // 0.07 * 100 is a little more than 7
    auto const rank =
        static_cast<std::uint64_t>(std::max(std::ceil(share * static_cast<double>(count_) - rounding), 1.0));
    std::uint64_t seen = 0;
    std::int64_t found = count_ == 0 ? 0 : rank == count_ ? most_ : least_;
    for (std::size_t place = 0; rank > 1 && rank < count_; ++place) {
        seen += counts_[place];
        if (seen >= rank) {
            found = std::clamp(static_cast<std::int64_t>(middleOf(place)), least_, most_);
            break;
        }
    }
    return std::round(static_cast<double>(found) / 100) / 10;
}

} // namespace trs::tools
