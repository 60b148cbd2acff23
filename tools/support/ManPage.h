// Manual pages, made of what `--help` is made of.
#pragma once

#include "tools/support/OptionTable.h"

#include <string>

namespace trs::tools {

// The page of a program in section 1, in roff with the man macros: its options, and those of its verbs.
std::string manPage(OptionTable const& table, std::string const& version);

} // namespace trs::tools
