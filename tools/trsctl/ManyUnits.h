// One command line on many units.
#pragma once

#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"
#include "tools/trsctl/Units.h"

#include <string>
#include <vector>

namespace trs::ctl {

// Runs the words, which name no unit, on each unit, on 32 at a time, each in a process of its own. What a unit's
// says stands behind the unit's name, line by line; in JSON {"unit", "exitCode", "output"}, an object a line. In the
// end the failures are told. The exit code is that of the first unit that failed.
ExitCode runOnUnits(std::vector<NamedUnit> const& units, std::vector<std::string> const& words, Format format);

} // namespace trs::ctl
