// All that a unit's objects tell, in one document, as snapshots have it.
#pragma once

#include "catalogue/Value.h"
#include "tools/trsctl/Program.h"

#include <string>

namespace trs::ctl {

// {"objects": {"Class:identifier": {"operation": its results, or {"error"}}}}, in a stable order: of all objects that
// the given one leads to, or without one the unit's well-known ones. What is wrong is said.
ExitCode readUnit(Program::Options const& options, std::string const& object, catalogue::Value& document);

} // namespace trs::ctl
