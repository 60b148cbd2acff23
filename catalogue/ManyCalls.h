// Calls of which many are under way.
#pragma once

#include "catalogue/Call.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trs::catalogue {

struct PlannedCall {
    std::string id; // of the object
    Operation const* operation;
    std::vector<Value> in = {};
};

// Makes the calls that `next` tells, 64 at a time, and has what came of each taken in their order: until there is no
// other one, though one that was taken may lead to more; until `end`, for which calls wait no longer; or until `take`
// returns false. False in the last two cases. The calling thread is under the run permission.
bool makeCalls(std::function<std::optional<PlannedCall>()> const& next, std::function<bool(Outcome&)> const& take,
               std::optional<std::chrono::steady_clock::time_point> end = {});

} // namespace trs::catalogue
