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

std::string Selection::parse(std::string const& text, Selection& selection)
{
    selection.steps_.clear();
    std::string_view rest = text;
    std::string const wrong = '\'' + text + "' is no path: $.name, [0], ['name'], [*], ..name";
    bool isFirst = true;
    if (rest.starts_with('$')) {
        rest.remove_prefix(1);
        isFirst = false;
    }
    for (; !rest.empty(); isFirst = false) {
        Step step{Step::Kind::name, rest.starts_with("..")};
        if (step.isDeep || rest.starts_with('.')) {
            rest.remove_prefix(step.isDeep ? 2 : 1);
        } else if (!rest.starts_with('[') && !isFirst) {
            return wrong;
        }
        if (rest.starts_with('[')) {
            rest.remove_prefix(1);
            std::size_t const end = std::min(rest.find(']'), rest.size());
            if (rest.starts_with('\'') || rest.starts_with('"')) {
                if (!takeQuoted(rest, step.name) || !rest.starts_with(']')) {
                    return wrong;
                }
                rest.remove_prefix(1);
            } else {
                step.kind = rest.substr(0, end) == "*" ? Step::Kind::all : Step::Kind::index;
                bool const isGood = end < rest.size() &&
                                    (step.kind == Step::Kind::all ||
                                     catalogue::parseNumber(rest.substr(0, end), INT32_MIN, INT32_MAX, step.index));
                if (!isGood) {
                    return wrong;
                }
                rest.remove_prefix(end + 1);
            }
        } else {
            std::size_t const end = std::min(rest.find_first_of(".["), rest.size());
            step.name = rest.substr(0, end);
            step.kind = step.name == "*" ? Step::Kind::all : Step::Kind::name;
            rest.remove_prefix(end);
            if (end == 0) {
                return wrong;
            }
        }
        selection.steps_.push_back(std::move(step));
    }
    return text.empty() ? wrong : std::string();
}

bool Selection::isSingular() const
{
    return std::ranges::none_of(steps_, [](Step const& each) { return each.isDeep || each.kind == Step::Kind::all; });
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
            if (step.kind == Step::Kind::all && base->is_structured()) {
                std::ranges::transform(*base, std::back_inserter(parts), [](Value const& each) { return &each; });
            } else if (step.kind == Step::Kind::name && base->is_object() && base->contains(step.name)) {
                parts.push_back(&(*base)[step.name]);
            } else if (step.kind == Step::Kind::index && base->is_array()) {
                long const place = step.index < 0 ? step.index + static_cast<long>(base->size()) : step.index;
                if (place >= 0 && place < static_cast<long>(base->size())) {
                    parts.push_back(&(*base)[static_cast<std::size_t>(place)]);
                }
            }
        }
    }
    std::vector<Value> found;
    std::ranges::transform(parts, std::back_inserter(found), [](Value const* each) { return *each; });
    return found;
}

} // namespace trs::ctl
