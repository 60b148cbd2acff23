// A walk that also goes by the reads that take keys: to modules by number, VLANs by identifier, entries by name.
#pragma once

#include "catalogue/Walk.h"

#include <functional>
#include <optional>
#include <vector>

namespace trs::ctl {

// A call of a read that takes one key, of which the unit knew something.
struct KeyedVisit {
    catalogue::Walk::Object const& object;
    catalogue::Operation const& operation;
    catalogue::Value const& key;
    catalogue::Outcome const& outcome; // done
    std::vector<std::string> const& references;
};

struct UnitVisitors {
    catalogue::Visitor plain; // not of a unit that is lost
    std::function<void(KeyedVisit const&)> keyed;
    // More keys to try with a read of an object than are known of any unit.
    std::function<std::vector<catalogue::Value>(catalogue::Walk::Object const&, catalogue::Operation const&)> keys = {};
    // By which call the unit was found to be silent or gone, which ends the walk.
    std::function<void(catalogue::Walk::Object const&, catalogue::Operation const&, catalogue::Outcome const&)> lost =
        {};
};

// Makes the calls of a walk that has begun, then those by keys of all objects that it came to, and goes on from what
// these lead to until there is nothing new; or until `plain` says that it is enough, the time is over, or the unit is
// lost. False then.
bool walkUnit(catalogue::Walk& walk, UnitVisitors const& visitors,
              std::optional<std::chrono::steady_clock::time_point> end = {});

} // namespace trs::ctl
