// What trsctl says when something is wrong.
#pragma once

#include "tools/trsctl/ExitCode.h"

#include <string>

namespace trs::ctl {

// Writes a line to standard error. The exit code is the one that is given.
ExitCode complain(std::string const& what, ExitCode code = ExitCode::usage);

} // namespace trs::ctl
