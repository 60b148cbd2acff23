// All that a unit's objects tell, in one document, as snapshots have it.
#pragma once

#include "catalogue/Value.h"
#include "catalogue/Walk.h"
#include "tools/trsctl/Program.h"

#include <functional>
#include <string>
#include <vector>

namespace trs::ctl {

// {"complete": true, "objects": {"Class:identifier": {"operation": its results, or {"error"}}}}, in a stable order: of
// all objects that the given one leads to, or without one the unit's well-known ones, which alone is complete. A read
// that takes a key has a list of results with their keys among them. `keys` are tried besides those that are known.
// What is wrong is said.
using MoreKeys =
    std::function<std::vector<catalogue::Value>(catalogue::Walk::Object const&, catalogue::Operation const&)>;
ExitCode readUnit(Program::Options const& options, std::string const& object, catalogue::Value& document,
                  MoreKeys const& keys = {});

// Where walks over a whole unit begin: the IP node, and what else may be there.
std::vector<catalogue::ObjectName> unitRoots();

} // namespace trs::ctl
