// The commands of the simulated unit.
#pragma once

#include "tools/support/Console.h"
#include "unit/Unit.h"

namespace trs::sim {

// `unit` outlives the console.
void addCommands(tools::Console& console, Unit& unit);

} // namespace trs::sim
