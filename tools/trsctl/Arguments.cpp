#include "tools/trsctl/Arguments.h"

#include "catalogue/ConstantNames.h"
#include "catalogue/Limits.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "tools/support/Nearest.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::Type;
using catalogue::Value;

constexpr std::string_view nameCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
constexpr std::string_view pathCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.[]";

// The name in "NAME=VALUE" or "NAME.PART=VALUE"; empty when the text is not shaped like that.
std::string_view nameIn(std::string_view text)
{
    std::string_view const name = text.substr(0, std::min(text.find_first_not_of(nameCharacters), text.size()));
    std::size_t const end = text.find_first_not_of(pathCharacters);
    return end != std::string_view::npos && text[end] == '=' ? name : std::string_view();
}

// The part of a value at a path that begins like ".field" or "[2]", and its type. Null, and why, when there is none.
Value* findPart(Type const*& type, Value& value, std::string_view path, std::string& wrong)
{
    Value* part = &value;
    while (!path.empty()) {
        std::size_t const length = std::min(path.find_first_of(".[", 1), path.size());
        std::string const step(path.substr(1, length - 1));
        path.remove_prefix(length);
        long index = 0;
        auto const field = std::ranges::find_if(
            type->fields, [&step](catalogue::Field const& each) { return catalogue::isSameWord(each.name, step); });
        bool const isList = type->kind == Type::Kind::sequence || type->kind == Type::Kind::array;
        if (type->kind == Type::Kind::record && field != type->fields.end() && part->is_object()) {
            part = &(*part)[std::string(field->name)];
            type = field->type;
        } else if (isList && step.ends_with(']') && part->is_array() &&
                   catalogue::parseNumber(std::string_view(step).substr(0, step.size() - 1), 0,
                                          static_cast<long>(part->size()) - 1, index)) {
            part = &(*part)[static_cast<std::size_t>(index)];
            type = type->element;
        } else {
            std::vector<std::string> names;
            for (catalogue::Field const& each : type->fields) {
                names.emplace_back(each.name);
            }
            wrong = fmt::format("'{}{}' is no part of {}{}", step.ends_with(']') ? "[" : "", step, type->text(),
                                tools::didYouMean(step, names));
            return nullptr;
        }
    }
    return part;
}

// What is wrong with a value: a path into it may stand in front.
std::string joined(std::string_view name, std::string const& wrong)
{
    return fmt::format("{}{}{}", name, wrong.front() == '.' || wrong.front() == '[' ? "" : ": ", wrong);
}

} // namespace

Arguments::Arguments(catalogue::Operation const& operation)
    : operation_(operation), names_(operation.parameterNames()), texts_(names_.size()), isGiven_(names_.size())
{
    for (std::size_t i = 0; i < names_.size(); ++i) {
        isGiven_[i] = !operation.parameters[i].isIn; // not to be given
    }
}

std::string Arguments::take(std::string const& word)
{
    std::string const name(nameIn(word));
    std::size_t const sign = word.find('=');
    std::size_t place = name.empty() ? names_.size() : find(name);
    if (place < names_.size() && name.size() < sign) {
        parts_.push_back({place, word.substr(name.size(), sign - name.size()), word.substr(sign + 1)});
        return operation_.parameters[place].isIn ? "" : fmt::format("'{}' is not to be given", word);
    }
    bool const hasName = place < names_.size();
    if (!hasName) {
        place = static_cast<std::size_t>(std::find(isGiven_.begin(), isGiven_.end(), false) - isGiven_.begin());
        if (std::string wrong = name.empty() ? "" : whyNoName(name, place); !wrong.empty()) {
            return wrong;
        }
    }
    if (place >= isGiven_.size()) {
        return fmt::format("'{}' is one argument too many", word);
    }
    if (isGiven_[place]) {
        return fmt::format("'{}' is given twice, or is not to be given", word);
    }
    texts_[place] = hasName ? word.substr(sign + 1) : word;
    isGiven_[place] = true;
    return {};
}

std::string Arguments::read(Class const& type, std::vector<Value> const& now, std::vector<Value>& values) const
{
    std::vector<std::size_t> indexes(names_.size()); // of the in-parameters among them
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (!operation_.parameters[i].isIn) {
            continue;
        }
        indexes[i] = values.size();
        bool const isKnown = now.size() > values.size();
        Value& value = values.emplace_back(isKnown ? now[values.size()] : Value());
        if (std::string wrong = readWhole(type, i, isKnown, value); !wrong.empty()) {
            return wrong;
        }
    }
    if (!parts_.empty() && now.empty()) {
        catalogue::bringWithin(operation_, values);
    }
    for (Part const& part : parts_) {
        if (std::string wrong = readPart(type, part, values[indexes[part.parameter]]); !wrong.empty()) {
            return wrong;
        }
    }
    return {};
}

// A parameter as its word says; without one, as it is, or what parts are put into.
std::string Arguments::readWhole(Class const& type, std::size_t parameter, bool isKnown, Value& value) const
{
    Type const& whole = *operation_.parameters[parameter].type;
    std::string wrong;
    if (isGiven_[parameter]) {
        wrong = catalogue::parseValue(whole, texts_[parameter], value);
    } else if (!isKnown && std::ranges::find(parts_, parameter, &Part::parameter) != parts_.end()) {
        value = catalogue::zero(whole);
    } else if (!isKnown) {
        return std::string(names_[parameter]) + " is missing";
    }
    wrong = wrong.empty() ? catalogue::resolveConstants(type, operation_, whole, value) : wrong;
    return wrong.empty() ? wrong : joined(names_[parameter], wrong);
}

// Puts a part into the value of its parameter.
std::string Arguments::readPart(Class const& type, Part const& part, Value& value) const
{
    Type const& whole = *operation_.parameters[part.parameter].type;
    Type const* leaf = &whole;
    std::string wrong;
    Value* const place = findPart(leaf, value, part.path, wrong);
    wrong = place != nullptr ? catalogue::parseValue(*leaf, part.text, *place) : wrong;
    if (!wrong.empty()) {
        return joined(std::string(names_[part.parameter]) + part.path, wrong);
    }
    wrong = catalogue::resolveConstants(type, operation_, whole, value);
    return wrong.empty() ? wrong : joined(names_[part.parameter], wrong);
}

// The parameter of that name, or of its only spelling in another case; else as many as there are.
std::size_t Arguments::find(std::string const& name) const
{
    auto found = std::ranges::find(names_, name);
    auto const isCalled = [&name](std::string_view each) { return catalogue::isSameWord(each, name); };
    if (found == names_.end() && std::ranges::count_if(names_, isCalled) == 1) {
        found = std::ranges::find_if(names_, isCalled);
    }
    return static_cast<std::size_t>(found - names_.begin());
}

// Why "NAME=..." is no value for the next parameter, either: only texts may look like that, and only when the name is
// not nearly one.
std::string Arguments::whyNoName(std::string const& name, std::size_t next) const
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (operation_.parameters[i].isIn) {
            names.emplace_back(names_[i]);
        }
    }
    bool const isText = next < names_.size() && operation_.parameters[next].type->kind == Type::Kind::text;
    std::string const meant = tools::didYouMean(name, names);
    return (isText && meant.empty()) || names.empty()
               ? ""
               : fmt::format("'{}' is no parameter of {}{}", name, operation_.name, meant);
}

} // namespace trs::ctl
