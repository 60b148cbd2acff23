#include "tools/trsctl/Predicate.h"

#include "catalogue/ValueText.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

namespace trs::ctl {

namespace {

std::string trimmed(std::string const& text)
{
    std::size_t const begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::optional<double> number(std::string const& text)
{
    double value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    bool const isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(value) : std::nullopt;
}

template <class T>
bool compare(T const& left, std::string const& comparator, T const& right)
{
    return comparator == "="    ? left == right
           : comparator == "!=" ? left != right
           : comparator == "<"  ? left < right
           : comparator == "<=" ? left <= right
           : comparator == ">"  ? left > right
                                : left >= right;
}

} // namespace

std::string Predicate::parse(std::string const& text, Predicate& predicate)
{
    constexpr std::string_view conjunction = " and ";
    predicate.comparisons_.clear();
    for (std::size_t begin = 0; begin <= text.size();) {
        std::size_t const end = std::min(text.find(conjunction, begin), text.size());
        std::string const part = trimmed(text.substr(begin, end - begin));
        std::size_t const sign = part.find_first_of("=!<>~");
        std::size_t const operand = part.find_first_not_of("=!<>~", std::min(sign, part.size()));
        std::string const comparator =
            sign == std::string::npos ? "" : part.substr(sign, std::min(operand, part.size()) - sign);
        constexpr std::string_view known[] = {"=", "!=", "<", "<=", ">", ">=", "~"};
        if (sign == 0 || std::find(std::begin(known), std::end(known), comparator) == std::end(known)) {
            return '\'' + part + "' is no comparison: PATH=VALUE, or with != < <= > >= ~";
        }
        predicate.comparisons_.push_back({trimmed(part.substr(0, sign)), comparator,
                                          operand == std::string::npos ? "" : trimmed(part.substr(operand))});
        begin = end + conjunction.size();
    }
    return {};
}

std::vector<std::string> Predicate::paths() const
{
    std::vector<std::string> paths;
    std::ranges::transform(comparisons_, std::back_inserter(paths), &Comparison::path);
    return paths;
}

bool Predicate::holds(catalogue::Value const& value) const
{
    std::map<std::string, std::string> leaves;
    catalogue::forEachLeaf(value, [&leaves](std::string const& path, catalogue::Value const& leaf) {
        leaves[path] = catalogue::textOf(leaf);
    });
    return std::all_of(comparisons_.begin(), comparisons_.end(), [&leaves](Comparison const& each) {
        auto const leaf = leaves.find(each.path);
        if (leaf == leaves.end()) {
            return false;
        }
        if (each.comparator == "~") {
            return leaf->second.find(each.operand) != std::string::npos;
        }
        auto const left = number(leaf->second);
        auto const right = number(each.operand);
        return left && right ? compare(*left, each.comparator, *right)
                             : compare(leaf->second, each.comparator, each.operand);
    });
}

} // namespace trs::ctl
