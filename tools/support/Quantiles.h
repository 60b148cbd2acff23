// How durations are spread.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace trs::tools {

// Of durations in nanoseconds: for each share, from 0 to 1, the shortest that so many of all do not exceed (the nearest
// rank), in microseconds, such as "12.3". Empty texts when there are no durations.
std::vector<std::string> quantiles(std::vector<std::int64_t> durations, std::initializer_list<double> shares);

} // namespace trs::tools
