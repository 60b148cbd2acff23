// The commands of the simulated unit.
#pragma once

#include "tools/support/Console.h"
#include "tools/trssim/ApplicationObject.h"
#include "tools/trssim/Inventory.h"
#include "tools/trssim/UnitAgent.h"

namespace sim {

// What the commands refer to must outlive the console.
void addCommands(tools::Console& console, UnitAgent& agent, ApplicationObject& object, Inventory const& inventory);

} // namespace sim
