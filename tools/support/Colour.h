// Colour, for people at terminals only.
#pragma once

#include <string>

namespace trs::tools {

enum class Colour { head, name, good, bad, aside };

enum class UseOfColour { whereItIsSeen, always, never };

// For the whole program; whereItIsSeen unless set: when standard output is a terminal that is not dumb, and NO_COLOR
// (no-color.org) is not in the environment.
void setUseOfColour(UseOfColour use);

// The text, in colour if it is used on standard output.
std::string coloured(std::string const& text, Colour colour);

} // namespace trs::tools
