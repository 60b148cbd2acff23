#include "bench/support/Figures.h"

#include "platform/NmaLogHelper.h"

#include <cstdio>

namespace {

std::string time(double seconds)
{
    return seconds < 1e-6 ? LogMakeString("%.2f ns", seconds * 1e9) : LogMakeString("%.2f us", seconds * 1e6);
}

std::string rate(double secondsPerCall) { return LogMakeString("%.0f /s", 1 / secondsPerCall); }

void printLine(std::string const& work, std::string const& limit, std::string const& ours, std::string const& ratio,
               std::string const& aim, std::string const& verdict)
{
    std::printf("%-52s %12s %12s %11s  %-11s %s\n", work.c_str(), limit.c_str(), ours.c_str(), ratio.c_str(),
                aim.c_str(), verdict.c_str());
    std::fflush(stdout);
}

char const* verdict(bool isMet) { return isMet ? "met" : "MISSED"; }

} // namespace

void bench::printHeading() { printLine("work", "limit", "ours", "ratio", "aim", ""); }

void bench::print(Figure const& figure)
{
    std::string const limit = figure.limit == 0 ? "-" : time(figure.limit);
    double const times = figure.limit == 0 ? 0 : figure.ours / figure.limit;
    double const more = figure.ours - figure.limit;
    double const value = figure.aim.value;
    switch (figure.aim.kind) {
    case Aim::none:
        printLine(figure.work, limit, time(figure.ours), figure.limit == 0 ? "-" : LogMakeString("%.2f", times), "-",
                  "");
        break;
    case Aim::ratio:
        printLine(figure.work, limit, time(figure.ours), LogMakeString("%.2f", times), LogMakeString("<= %.2f", value),
                  verdict(times <= value));
        break;
    case Aim::surplus:
        printLine(figure.work, limit, time(figure.ours), LogMakeString("%+.2f ns", more * 1e9),
                  LogMakeString("<= %+.2f ns", value * 1e9), verdict(more <= value));
        break;
    case Aim::rate:
        printLine(figure.work, rate(figure.limit), rate(figure.ours), LogMakeString("%.2f", 1 / times),
                  LogMakeString(">= %.2f", value), verdict(1 / times >= value));
        break;
    case Aim::most:
        printLine(figure.work, limit, time(figure.ours), LogMakeString("%.2f", times),
                  LogMakeString("<= %.0f ms", value * 1e3), verdict(figure.ours <= value));
        break;
    }
}

void bench::printCount(Count const& count)
{
    auto const text = [&](long value) { return LogMakeString("%ld%s", value, count.unit); };
    bool const isMet = count.ours >= count.least && (count.most == 0 || count.ours <= count.most);
    printLine(count.what, text(count.without), text(count.ours), "-",
              count.least > 0 ? ">= " + text(count.least) : "<= " + text(count.most), verdict(isMet));
}
