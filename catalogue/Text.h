// Texts as people write them: the words of a line, numbers, points in time.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

using Words = std::vector<std::string>;

// Appends the words of a line as a POSIX shell has them: blanks separate, '...' and "..." and \ keep them from it, #
// begins a comment. Empty, or what is wrong with the line; the words before that are there.
std::string splitWords(std::string_view line, Words& words);

// Whether two words of ASCII differ in the case of letters at most.
bool isSameWord(std::string_view one, std::string_view other);

// A decimal number from `least` to `most`. False, with `number` as it was, when the text is none.
bool parseNumber(std::string_view text, long least, long most, long& number);

// RFC 3339, in UTC and milliseconds: "2011-05-30T12:00:00.250Z".
std::string timestamp(std::chrono::system_clock::time_point time);

} // namespace trs::catalogue
