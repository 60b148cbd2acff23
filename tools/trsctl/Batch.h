// Command lines in a text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// The words of a line as a POSIX shell has them: blanks separate, '...' and "..." and \ keep them from it, # begins a
// comment. Empty, or what is wrong with the line.
std::string splitLine(std::string_view line, std::vector<std::string>& words);
