#include "tools/support/Quantiles.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace trs::tools {

std::vector<std::string> quantiles(std::vector<std::int64_t> durations, std::initializer_list<double> shares)
{
    constexpr double rounding = 1e-9; // 0.07 * 100 is a little more than 7
    std::ranges::sort(durations);
    std::vector<std::string> texts;
    for (double const share : shares) {
        double const rank = std::ceil(share * static_cast<double>(durations.size()) - rounding);
        auto const place = static_cast<std::size_t>(std::max(rank, 1.0)) - 1;
        texts.push_back(durations.empty() ? "" : fmt::format("{:.1f}", static_cast<double>(durations[place]) / 1000));
    }
    return texts;
}

} // namespace trs::tools
