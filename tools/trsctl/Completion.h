// What may stand in the place of the word that is being typed.
#pragma once

#include "tools/trsctl/Program.h"

#include <string>
#include <vector>

namespace trs::ctl {

// The words that go on with the last of `words`, which may be empty; the others are those before it, without the
// program's name. Options, verbs and choices come from the program's own table, objects from the unit if it answers
// soon.
std::vector<std::string> completions(Program& program, std::vector<std::string> const& words);

} // namespace trs::ctl
