#include "tools/support/Timestamp.h"

#include "platform/NmaLogHelper.h"

#include <array>
#include <ctime>

namespace tools {

std::string timestamp(std::chrono::system_clock::time_point time)
{
    auto const seconds = std::chrono::floor<std::chrono::seconds>(time);
    std::time_t const whole = std::chrono::system_clock::to_time_t(seconds);
    tm parts{};
    ::gmtime_r(&whole, &parts);
    std::array<char, sizeof "2000-01-01T00:00:00"> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    auto const rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - seconds);
    return LogMakeString("%s.%03ldZ", text.data(), static_cast<long>(rest.count()));
}

} // namespace tools
