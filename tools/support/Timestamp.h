// Points in time as logs have them.
#pragma once

#include <chrono>
#include <string>

namespace tools {

// RFC 3339, in UTC and milliseconds: "2011-05-30T12:00:00.250Z".
std::string timestamp(std::chrono::system_clock::time_point time);

} // namespace tools
