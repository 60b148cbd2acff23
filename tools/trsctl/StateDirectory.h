// Where trsctl keeps what outlives it.
#pragma once

#include <filesystem>

namespace trs::ctl {

// trsctl/ in $XDG_STATE_HOME, else in ~/.local/state, made if it is not there; empty when there is no place for it.
std::filesystem::path stateDirectory();

} // namespace trs::ctl
