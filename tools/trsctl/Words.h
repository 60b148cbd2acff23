// Words of a command line.
#pragma once

#include <string>

namespace trs::ctl {

// The word as a shell takes it for itself: quoted where it must be.
std::string shellWord(std::string const& word);

} // namespace trs::ctl
