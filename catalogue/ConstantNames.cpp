#include "catalogue/ConstantNames.h"

#include "catalogue/Constants.h"
#include "catalogue/LimitNotation.h"
#include "catalogue/LimitTable.h"
#include "catalogue/Text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <functional>
#include <optional>

namespace trs::catalogue {

namespace {

constexpr std::size_t mostNamed = 12; // constants in a message
constexpr std::string_view attributeBase = "QelBaseClient";

bool isInteger(Type const& type)
{
    switch (type.kind) {
    case Type::Kind::octet:
    case Type::Kind::int16:
    case Type::Kind::unsigned16:
    case Type::Kind::int32:
    case Type::Kind::unsigned32:
        return true;
    default:
        return false;
    }
}

// The class and its bases.
void addChain(Class const* type, std::vector<std::string_view>& classes)
{
    for (; type != nullptr; type = type->base()) {
        if (std::ranges::find(classes, type->name) == classes.end()) {
            classes.push_back(type->name);
        }
    }
}

// Calls `act` with each integer of a value, with the record and field that it is in, if any; and with those names of
// the classes where constants for it are looked for.
struct Place {
    Type const* record; // null: none
    std::string_view field;
    std::vector<std::string_view> const& classes;
    std::string path = {}; // in the value: ".bfdInfo.bfdTimer", "[2]"
};
using Act = std::function<void(Value& value, Place const& place)>;

void forEachInteger(Type const& type, Value& value, Place const& place, Act const& act)
{
    if (isInteger(type)) {
        act(value, place);
    } else if (type.kind == Type::Kind::sequence && value.is_array()) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            forEachInteger(*type.element, value[i],
                           {place.record, place.field, place.classes, place.path + '[' + std::to_string(i) + ']'}, act);
        }
    } else if (type.kind == Type::Kind::record && value.is_object()) {
        std::vector<std::string_view> classes = place.classes;
        addChain(findClass(type.name.substr(0, type.name.find(':'))), classes);
        for (Field const& field : type.fields) {
            std::string const name(field.name);
            if (value.contains(name)) {
                forEachInteger(*field.type, value[name], {&type, field.name, classes, place.path + '.' + name}, act);
            }
        }
    }
}

bool isName(std::string_view word)
{
    return !word.empty() && std::isdigit(static_cast<unsigned char>(word.front())) == 0 &&
           std::ranges::all_of(word, [](unsigned char each) { return std::isalnum(each) != 0 || each == '_'; });
}

// The parts of "A|B".
std::vector<std::string_view> partsOf(std::string_view text)
{
    std::vector<std::string_view> parts;
    for (;;) {
        std::size_t const length = std::min(text.find('|'), text.size());
        parts.push_back(text.substr(0, length));
        if (length == text.size()) {
            return parts;
        }
        text.remove_prefix(length + 1);
    }
}

std::optional<std::int64_t> numberOf(std::string_view text)
{
    int const base = text.starts_with("0x") ? 16 : 10;
    text.remove_prefix(base == 16 ? 2 : 0);
    std::int64_t number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size() && !text.empty() ? std::optional(number)
                                                                                     : std::nullopt;
}

// Empty when the limit has no names for the number.
std::string nameOf(std::int64_t number, Limit const& limit)
{
    for (NamedValue const& each : limit.names) {
        if (each.value == number) {
            return std::string(each.name);
        }
    }
    std::string names;
    for (NamedValue const& each : limit.names) {
        auto const bit = each.value.is_number() ? each.value.get<std::int64_t>() : 0;
        if (limit.kind == Limit::Kind::bits && bit != 0 && (number & bit) == bit) {
            names += (names.empty() ? "" : "|") + std::string(each.name);
            number &= ~bit;
        }
    }
    return number == 0 ? names : std::string();
}

void nameNumbers(LimitedValue const& limited, Value& value)
{
    for (Limit const& limit : limited.limits) {
        std::string const name = value.is_number_integer() ? nameOf(value.get<std::int64_t>(), limit) : std::string();
        if (!name.empty()) {
            value = name;
        }
    }
    for (LimitedValue const& field : limited.fields) {
        if (value.is_object() && value.contains(field.name)) {
            nameNumbers(field, value[field.name]);
        }
    }
    if (value.is_array() && !limited.element.empty()) {
        for (Value& element : value) {
            nameNumbers(limited.element.front(), element);
        }
    }
}

// The names that the comment of a field has for it.
std::vector<NamedValue> namesAt(Place const& place)
{
    if (place.record == nullptr) {
        return {};
    }
    std::string_view name = place.record->name;
    StatedLimits const stated = readLimits(place.record->commentOf(place.field), splitScope(name, nullptr));
    return stated.limits.empty() ? std::vector<NamedValue>() : stated.limits.front().limit.names;
}

// The number that a name stands for at that place.
std::optional<std::int64_t> numberNamed(std::string_view name, Place const& place, std::vector<NamedValue> const& names)
{
    for (std::string_view const className : place.classes) {
        Constant const* const found = findConstant(className, name);
        if (found != nullptr && found->value.is_number()) {
            return found->value.get<std::int64_t>();
        }
    }
    auto const found = std::ranges::find(names, name, &NamedValue::name);
    return found != names.end() && found->value.is_number() ? std::optional(found->value.get<std::int64_t>())
                                                            : numberOf(name);
}

// The same for a name in whatever case, where it can be only one.
std::optional<std::int64_t> numberCalled(std::string_view name, Place const& place,
                                         std::vector<NamedValue> const& names)
{
    std::vector<std::string_view> found;
    auto const add = [&](std::string_view each) {
        if (isSameWord(each, name) && std::ranges::find(found, each) == found.end()) {
            found.push_back(each);
        }
    };
    for (std::string_view const className : place.classes) {
        if (Class const* const type = findClass(className)) {
            std::ranges::for_each(constantsOf(*type), [&](Constant const* each) { add(each->name); });
        }
    }
    std::ranges::for_each(names, [&](NamedValue const& each) { add(each.name); });
    return found.size() == 1 ? numberNamed(found.front(), place, names) : std::nullopt;
}

// Why a word stands for no number at that place.
std::string unknown(std::string_view word, Place const& place, std::vector<NamedValue> const& names)
{
    std::string text =
        place.path + (place.path.empty() ? "'" : ": '") + std::string(word) + "' is neither a number nor ";
    if (names.empty() || names.size() > mostNamed) {
        return text + "a constant of " + std::string(place.classes[0]);
    }
    text += "one of ";
    for (NamedValue const& each : names) {
        text += (&each == &names.front() ? "" : ", ") + std::string(each.name);
    }
    return text;
}

// Replaces a name, or names and numbers joined by |, by the number that they stand for. Empty, or what is wrong.
std::string resolve(std::string const& text, Place const& place, Value& value)
{
    std::vector<std::string_view> const parts = partsOf(text);
    if (parts.size() == 1 && !isName(text)) {
        return {}; // a number, or what is told to be none
    }
    std::vector<NamedValue> const names = namesAt(place);
    std::int64_t bits = 0;
    for (std::string_view const part : parts) {
        std::optional<std::int64_t> number = numberNamed(part, place, names);
        number = number ? number : numberCalled(part, place, names);
        if (!number) {
            return unknown(part, place, names);
        }
        bits |= *number;
    }
    value = bits;
    return {};
}

std::vector<std::string_view> classesOf(Class const& type, Operation const& operation)
{
    std::vector<std::string_view> classes;
    addChain(&type, classes);
    addChain(findClass(operation.classId), classes);
    return classes;
}

} // namespace

std::string resolveConstants(Class const& type, Operation const& operation, Type const& parameter, Value& value)
{
    std::vector<std::string_view> const classes = classesOf(type, operation);
    std::string wrong;
    forEachInteger(parameter, value, {nullptr, "", classes}, [&wrong](Value& integer, Place const& place) {
        if (wrong.empty() && integer.is_string()) {
            wrong = resolve(integer.get<std::string>(), place, integer);
        }
    });
    return wrong;
}

void nameConstants(Class const& type, Operation const& operation, Value& values)
{
    // What an attribute object keeps is one of the constants of its class, if that has any.
    if (operation.classId != type.id && values.contains("result") && values["result"].is_number_integer()) {
        Class const* const declares = findClass(operation.classId);
        bool const isAttribute = declares != nullptr && declares->baseName == attributeBase;
        auto const constants = isAttribute ? constantsOf(type) : std::vector<Constant const*>();
        auto const found =
            std::ranges::find_if(constants, [&](Constant const* each) { return each->value == values["result"]; });
        if (found != constants.end()) {
            values["result"] = (*found)->name;
        }
    }
    nameConstants(operation, values);
}

void nameConstants(Operation const& operation, Value& values)
{
    for (LimitedValue const& limited : limitedValues(operation)) {
        if (values.contains(limited.name)) {
            nameNumbers(limited, values[limited.name]);
        }
    }
}

} // namespace trs::catalogue
