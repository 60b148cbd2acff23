// The places in what operations take and tell, as text output has them: "addresses[0].ipAddress".
#pragma once

#include "catalogue/Class.h"

#include <span>
#include <string>
#include <vector>

namespace trs::ctl {

// All leaves of the operation's result and out-arguments, or with `all` of the in-arguments too; "[]" is any element.
std::vector<std::string> leafPaths(catalogue::Operation const& operation, bool all);

// Empty when one of the operations can have such a leaf; else what is wrong with the path, and what may be meant.
std::string whyNoPath(std::string const& path, std::span<catalogue::Operation const* const> operations, bool all);

} // namespace trs::ctl
