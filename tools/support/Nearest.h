// What somebody may have meant who wrote a word that is none.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace trs::tools {

// The candidate that the word is most likely a misspelling of: the same in another case, the least changes of a letter
// (left out, put in, replaced, two swapped), at most one for three letters. Empty when there is none.
std::string nearest(std::string_view word, std::span<std::string const> candidates);

// "; did you mean 'get'?", or nothing.
std::string didYouMean(std::string_view word, std::span<std::string const> candidates);

} // namespace trs::tools
