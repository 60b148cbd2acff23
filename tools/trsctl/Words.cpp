#include "tools/trsctl/Words.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace trs::ctl {

std::string shellWord(std::string const& word)
{
    constexpr std::string_view plain = "-_./:=@%+,";
    bool const isPlain = !word.empty() && std::all_of(word.begin(), word.end(), [&](unsigned char each) {
        return std::isalnum(each) != 0 || plain.find(static_cast<char>(each)) != std::string_view::npos;
    });
    if (isPlain) {
        return word;
    }
    std::string text = "'";
    for (char const each : word) {
        text += each == '\'' ? "'\\''" : std::string(1, each);
    }
    return text + '\'';
}

} // namespace trs::ctl
