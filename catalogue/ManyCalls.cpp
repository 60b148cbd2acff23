#include "catalogue/ManyCalls.h"

#include "broker/Deadline.h"

#include <algorithm>
#include <deque>

namespace trs::catalogue {

namespace {

constexpr std::size_t mostUnderWay = 64; // as one connection carries at a time

// What a call that begins now may take.
std::chrono::milliseconds timeUntil(std::optional<std::chrono::steady_clock::time_point> const& end)
{
    std::chrono::milliseconds const time = Deadline::current();
    return end ? std::min(time, std::chrono::duration_cast<std::chrono::milliseconds>(*end -
                                                                                      std::chrono::steady_clock::now()))
               : time;
}

} // namespace

bool makeCalls(std::function<std::optional<PlannedCall>()> const& next, std::function<bool(Outcome&)> const& take,
               std::optional<std::chrono::steady_clock::time_point> end)
{
    std::deque<StartedCall> underWay;
    bool isHere = false; // where one call after the other is as good
    for (;;) {
        while (underWay.size() < mostUnderWay && !(isHere && !underWay.empty())) {
            std::optional<PlannedCall> const call = next();
            if (!call) {
                break;
            }
            std::chrono::milliseconds const time = timeUntil(end);
            if (time.count() <= 0) {
                return false;
            }
            CallDeadline const deadline(time);
            TipprmiObjectClient const object(TipprmiOID(call->id));
            isHere = object.getServer() != nullptr;
            underWay.emplace_back(object, *call->operation, call->in);
        }
        if (underWay.empty()) {
            return true;
        }
        Outcome outcome = underWay.front().outcome();
        underWay.pop_front();
        if (!take(outcome)) {
            return false;
        }
    }
}

} // namespace trs::catalogue
