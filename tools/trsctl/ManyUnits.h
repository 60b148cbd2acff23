// One command line on many units.
#pragma once

#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"
#include "tools/trsctl/Units.h"

#include <optional>
#include <string>
#include <vector>

namespace trs::ctl {

// What is run on each of many units.
struct UnitsCommand {
    std::vector<std::string> words; // which name no unit
    Format format = Format::text;
    std::optional<std::string> input = {}; // for the standard input of each; else there is none
};

// Runs it on 32 units at a time, each in a process of its own. What a unit's says stands behind the unit's name, line
// by line; in JSON {"unit", "exitCode", "output"}, an object a line. In the end the failures are told. The exit code is
// that of the first unit that failed.
ExitCode runOnUnits(std::vector<NamedUnit> const& units, UnitsCommand const& command);

} // namespace trs::ctl
