// What brings a unit to a wanted state: calls, in an order that works.
#pragma once

#include "tools/trsctl/UnitState.h"

#include <string>
#include <vector>

namespace trs::ctl {

struct Step {
    enum class Kind { create, set, remove };

    Kind kind = Kind::set;
    catalogue::ObjectName object;
    catalogue::Class const* type = nullptr;
    catalogue::Operation const* operation = nullptr;
    std::vector<catalogue::Value> in = {};
    catalogue::Value before = {}; // what was told, of a setter
    std::string creates = {};     // the identifier of the object that the call is to make

    // "EthIfNet:IfNet/Transport deleteVlan vlanId=300", as a command line has it.
    std::string text() const;
    catalogue::Value json() const;
    // The in-arguments as the unit takes them: numbers instead of the names of constants.
    std::vector<catalogue::Value> arguments() const;
};

// What is not as it is wanted, and nothing sets: a place, and both values; null where one side has none.
struct Unsettable {
    std::string place; // "Class:identifier operation.path", or an object
    catalogue::Value wanted;
    catalogue::Value now;
};

struct Plan {
    std::vector<Step> steps; // creations, settings, removals
    std::vector<Unsettable> facts;
};

// What `wanted` has a unit do that tells `now`: objects that are missing are created, and given what of their readings
// a creation takes; other readings of theirs are for another plan when they are there. Objects that are not wanted, or
// that a complete state does not name, are removed, where anything removes them.
Plan makePlan(UnitState const& wanted, UnitState const& now);

} // namespace trs::ctl
