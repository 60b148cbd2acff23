// The commands of the simulated unit.
#pragma once

#include "tools/support/Console.h"
#include "tools/trssim/Unit.h"

namespace sim {

// `unit` outlives the console.
void addCommands(tools::Console& console, Unit& unit);

} // namespace sim
