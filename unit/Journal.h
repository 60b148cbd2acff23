// What a simulated unit tells of itself: a line for everything of note that happens to it.
#pragma once

#include <functional>
#include <string>

namespace trs::sim {

// Where the lines go, from any thread; null, as at first: nowhere. Set before there is a unit.
void setJournal(std::function<void(std::string const& line)> journal);

// For the unit's parts.
void say(std::string const& line);

} // namespace trs::sim
