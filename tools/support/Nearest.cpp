#include "tools/support/Nearest.h"

#include <algorithm>
#include <cctype>

namespace trs::tools {

namespace {

constexpr std::size_t longestWord = 80; // beyond that nobody misspelt anything

std::string lower(std::string_view text)
{
    std::string small(text);
    std::ranges::transform(small, small.begin(), [](unsigned char each) { return std::tolower(each); });
    return small;
}

// Of two texts: changes of a letter, where two letters that are swapped are one change (optimal string alignment).
std::size_t distance(std::string const& one, std::string const& other)
{
    std::vector<std::vector<std::size_t>> cost(one.size() + 1, std::vector<std::size_t>(other.size() + 1));
    for (std::size_t i = 0; i <= one.size(); ++i) {
        for (std::size_t j = 0; j <= other.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            cost[i][j] = std::min(
                {cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (one[i - 1] == other[j - 1] ? 0U : 1U)});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[one.size()][other.size()];
}

} // namespace

std::string nearest(std::string_view word, std::span<std::string const> candidates)
{
    if (word.size() > longestWord) {
        return {};
    }
    std::string const typed = lower(word);
    std::string found;
    std::size_t least = typed.size() / 3 + 1;
    for (std::string const& candidate : candidates) {
        std::size_t const changes = candidate.size() > longestWord ? least : distance(typed, lower(candidate));
        if (changes < least) {
            least = changes;
            found = candidate;
        }
    }
    return found;
}

std::string didYouMean(std::string_view word, std::span<std::string const> candidates)
{
    std::string const meant = nearest(word, candidates);
    return meant.empty() ? meant : "; did you mean '" + meant + "'?";
}

} // namespace trs::tools
