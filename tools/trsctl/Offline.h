// The verbs that need no unit: what the catalogue says.
#pragma once

#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"

#include <string>

// `list`: the classes; `list CLASS`: the operations of one, inherited ones first.
ExitCode list(std::string const& className, Format format);

// `describe CLASS`, `describe CLASS.OPERATION`, `describe 0xIDENTIFIER`.
ExitCode describe(std::string const& name, Format format);
