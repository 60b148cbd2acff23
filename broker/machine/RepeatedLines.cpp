#include "broker/machine/RepeatedLines.h"

#include "platform/NmaLogHelper.h"

#include <algorithm>

namespace trs {

namespace {

constexpr auto toldEvery = std::chrono::seconds(1);

} // namespace

RepeatedLines::RepeatedLines(TimeAndChance timing, Remind remind)
    : timing_(std::move(timing)), remind_(std::move(remind))
{
}

RepeatedLines::~RepeatedLines()
{
    for (auto const& [text, kind] : kinds_) {
        tellCount(kind, timing_.now());
    }
}

void RepeatedLines::tell(int severity, std::string const& kind, std::string const& detail)
{
    std::lock_guard const lock(mutex_);
    Time const now = timing_.now();
    tellOverdue(now);
    auto const [place, isFirst] = kinds_.try_emplace(kind, Kind{severity, now});
    if (isFirst) {
        LogDispatch(severity, kind + detail);
        return;
    }
    ++place->second.count;
    place->second.last = kind + detail;
    if (remind_ && !isReminded_) {
        isReminded_ = true;
        remind_(place->second.since + toldEvery);
    }
}

std::optional<RepeatedLines::Time> RepeatedLines::tellDue()
{
    std::lock_guard const lock(mutex_);
    tellOverdue(timing_.now());
    std::optional<Time> next;
    for (auto const& [text, kind] : kinds_) {
        if (kind.count != 0) {
            next = std::min(next.value_or(kind.since + toldEvery), kind.since + toldEvery);
        }
    }
    isReminded_ = next.has_value();
    return next;
}

void RepeatedLines::tellCount(Kind const& kind, Time now)
{
    if (kind.count == 1) {
        LogDispatch(kind.severity, kind.last);
    } else if (kind.count > 1) {
        auto const seconds = std::chrono::duration_cast<std::chrono::seconds>(now - kind.since).count();
        std::string const time = seconds < 2 ? "second" : std::to_string(seconds) + " s";
        LogDispatch(kind.severity,
                    kind.last + " (and " + std::to_string(kind.count - 1) + " more like it in the last " + time + ")");
    }
}

void RepeatedLines::tellOverdue(Time now)
{
    for (auto place = kinds_.begin(); place != kinds_.end();) {
        Kind& kind = place->second;
        if (now - kind.since < toldEvery) {
            ++place;
        } else if (kind.count == 0) {
            place = kinds_.erase(place);
        } else {
            tellCount(kind, now);
            kind.since = now;
            kind.count = 0;
            ++place;
        }
    }
}

} // namespace trs
