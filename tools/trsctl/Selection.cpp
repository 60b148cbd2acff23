#include "tools/trsctl/Selection.h"

#include "catalogue/Text.h"

#include <algorithm>
#include <string_view>

namespace trs::ctl {

namespace {

using catalogue::Value;
using Parts = std::vector<Value const*>;

void addDescendants(Value const& value, Parts& parts)
{
    parts.push_back(&value);
    for (Value const& child : value) {
        if (value.is_structured()) {
            addDescendants(child, parts);
        }
    }
}

// A name in quotes at the text's beginning, which is taken off; false when there is none that ends.
bool takeQuoted(std::string_view& text, std::string& name)
{
    char const quote = text.front();
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == quote) {
            text.remove_prefix(i + 1);
            return true;
        }
        i += text[i] == '\\' && i + 1 < text.size() ? 1U : 0U;
        name += text[i];
    }
    return false;
}

} // namespace

// What stands in brackets, behind the opening one. False when it is none of what may.
bool Selection::takeBracketed(std::string_view& rest, Step& step)
{
    if (rest.starts_with('\'') || rest.starts_with('"')) {
        if (!takeQuoted(rest, step.name) || !rest.starts_with(']')) {
            return false;
        }
        rest.remove_prefix(1);
        return true;
    }
    std::size_t const end = rest.find(']');
    if (end == std::string_view::npos) {
        return false;
    }
    std::string_view const word = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    step.kind = word == "*" ? Step::Kind::all : Step::Kind::index;
    return step.kind == Step::Kind::all || catalogue::parseNumber(word, INT32_MIN, INT32_MAX, step.index);
}

bool Selection::takeStep(std::string_view& rest, bool isFirst, Step& step)
{
    step.isDeep = rest.starts_with("..");
    if (step.isDeep || rest.starts_with('.')) {
        rest.remove_prefix(step.isDeep ? 2 : 1);
    } else if (!rest.starts_with('[') && !isFirst) {
        return false;
    }
    if (rest.starts_with('[')) {
        rest.remove_prefix(1);
        return takeBracketed(rest, step);
    }
    std::size_t const end = std::min(rest.find_first_of(".["), rest.size());
    step.name = rest.substr(0, end);
    step.kind = step.name == "*" ? Step::Kind::all : Step::Kind::name;
    rest.remove_prefix(end);
    return end != 0;
}

std::string Selection::parse(std::string const& text, Selection& selection)
{
    selection.steps_.clear();
    selection.text_ = text;
    std::string_view rest = text;
    bool isGood = !text.empty();
    bool isFirst = !rest.starts_with('$');
    rest.remove_prefix(isFirst ? 0 : 1);
    for (; isGood && !rest.empty(); isFirst = false) {
        isGood = takeStep(rest, isFirst, selection.steps_.emplace_back(Step{Step::Kind::name, false}));
    }
    return isGood ? std::string() : '\'' + text + "' is no path: $.name, [0], ['name'], [*], ..name";
}

bool Selection::isSingular() const
{
    return std::ranges::none_of(steps_, [](Step const& each) { return each.isDeep || each.kind == Step::Kind::all; });
}

// The children of a value that a step selects.
void Selection::addChildren(Value const& base, Step const& step, std::vector<Value const*>& parts)
{
    if (step.kind == Step::Kind::all && base.is_structured()) {
        std::ranges::transform(base, std::back_inserter(parts), [](Value const& each) { return &each; });
    } else if (step.kind == Step::Kind::name && base.is_object() && base.contains(step.name)) {
        parts.push_back(&base[step.name]);
    } else if (step.kind == Step::Kind::index && base.is_array()) {
        long const place = step.index < 0 ? step.index + static_cast<long>(base.size()) : step.index;
        if (place >= 0 && place < static_cast<long>(base.size())) {
            parts.push_back(&base[static_cast<std::size_t>(place)]);
        }
    }
}

std::vector<Value> Selection::of(Value const& value) const
{
    Parts parts{&value};
    for (Step const& step : steps_) {
        Parts bases;
        for (Value const* const part : parts) {
            if (step.isDeep) {
                addDescendants(*part, bases);
            } else {
                bases.push_back(part);
            }
        }
        parts.clear();
        for (Value const* const base : bases) {
            addChildren(*base, step, parts);
        }
    }
    std::vector<Value> found;
    std::ranges::transform(parts, std::back_inserter(found), [](Value const* each) { return *each; });
    return found;
}

} // namespace trs::ctl
