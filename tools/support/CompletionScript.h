// What shells complete of programs without verbs, made of what `--help` is made of.
#pragma once

#include "tools/support/OptionTable.h"

#include <string>

namespace trs::tools {

// A script that has bash, zsh or fish complete the program's options, the choices of their values, and files elsewhere.
std::string completionScript(OptionTable const& table, std::string const& shell);

} // namespace trs::tools
