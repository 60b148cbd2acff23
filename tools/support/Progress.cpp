#include "tools/support/Progress.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace trs::tools {

namespace {

constexpr std::chrono::milliseconds patience{500}; // before the first drawing
constexpr std::chrono::milliseconds interval{100};
constexpr std::size_t width = 30;
constexpr char const* clearLine = "\r\x1b[K";

} // namespace

Progress::Progress(std::string what)
    : what_(std::move(what)), isTerminal_(::isatty(STDERR_FILENO) == 1), next_(Clock::now() + patience)
{
}

void Progress::show(std::size_t done, std::size_t total)
{
    if (!isTerminal_ || Clock::now() < next_) {
        return;
    }
    isDrawn_ = true;
    next_ = Clock::now() + interval;
    std::size_t const filled = total == 0 ? 0 : std::min(width, done * width / total);
    static_cast<void>(std::fprintf(stderr, "%s%s [%s%s] %zu of %zu", clearLine, what_.c_str(),
                                   std::string(filled, '#').c_str(), std::string(width - filled, '.').c_str(), done,
                                   total));
}

void Progress::clear()
{
    if (std::exchange(isDrawn_, false)) {
        static_cast<void>(std::fputs(clearLine, stderr));
    }
}

} // namespace trs::tools
