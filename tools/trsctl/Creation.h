// Calls that make objects, and take them away.
#pragma once

#include "tools/trsctl/Plan.h"

#include <optional>
#include <string>
#include <vector>

namespace trs::ctl {

// The call that makes an object as it is wanted, with what of its readings the call takes. None when nothing makes it.
std::optional<Step> creationOf(UnitState::Object const& object, UnitState const& wanted, UnitState const& now);
// The call that takes an object away which is there. None when nothing does.
std::optional<Step> removalOf(UnitState::Object const& object, UnitState const& now);

// The part of what a collection's reader tells that refers to the object; null when there is none.
catalogue::Value entryOf(catalogue::Value const& told, std::string const& id);
// The values that an operation tells, in order.
std::vector<catalogue::Value> toldValues(catalogue::Operation const& operation, catalogue::Value const& told);
// Whether an object is a part of another one, by its identifier.
bool isUnder(std::string const& id, std::string const& owner);

} // namespace trs::ctl
