#include "catalogue/Constants.h"

#define HEADERS
#include "catalogue/Classes.inc" // made by classes.awk
#undef HEADERS
#include "broker/PrintableText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <concepts>
#include <functional>
#include <map>
#include <optional>

namespace trs::catalogue {

namespace {

constexpr std::size_t mostNamed = 12; // constants in a message

Value valueOf(bool value) { return value; }
Value valueOf(std::integral auto value) { return std::int64_t{value}; }
Value valueOf(std::string const& value) { return value; }

std::vector<Constant> const& allConstants()
{
    static std::vector<Constant> const constants{
#define CONSTANT(Class, Name) {#Class, #Name, valueOf(Class::Name)},
#include "catalogue/Constants.inc" // made by constants.awk
#undef CONSTANT
    };
    return constants;
}

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

Constant const* find(std::string_view className, std::string_view name)
{
    auto const found = std::ranges::find_if(
        allConstants(), [&](Constant const& each) { return each.className == className && each.name == name; });
    return found != allConstants().end() ? &*found : nullptr;
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
};
using Act = std::function<void(Value& value, Place const& place)>;

void forEachInteger(Type const& type, Value& value, Place const& place, Act const& act)
{
    if (isInteger(type)) {
        act(value, place);
    } else if (type.kind == Type::Kind::sequence && value.is_array()) {
        for (Value& element : value) {
            forEachInteger(*type.element, element, place, act);
        }
    } else if (type.kind == Type::Kind::record && value.is_object()) {
        std::vector<std::string_view> classes = place.classes;
        addChain(findClass(type.name.substr(0, type.name.find(':'))), classes);
        for (Field const& field : type.fields) {
            std::string const name(field.name);
            if (value.contains(name)) {
                forEachInteger(*field.type, value[name], {&type, field.name, classes}, act);
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

// Constants that a comment says a number to be one of, or to be made of.
struct Family {
    std::vector<Constant const*> constants;
    bool areBits = false;
};

// Those of a class that begin with a word such as "IFF__", before "bits" or "constant", or that a word names.
Family familyIn(std::string_view comment, std::vector<std::string_view> const& classes)
{
    Family family;
    std::string_view last;
    for (std::string_view rest = comment; !rest.empty();) {
        std::size_t const length = std::min(rest.find_first_of(" ,.;"), rest.size());
        std::string_view word = rest.substr(0, length);
        rest.remove_prefix(std::min(length + 1, rest.size()));
        std::size_t const scope = word.rfind("::");
        std::string_view const owner = scope == std::string_view::npos ? "" : word.substr(0, scope);
        word.remove_prefix(scope == std::string_view::npos ? 0 : scope + 2);
        for (Constant const& each : allConstants()) {
            bool const isOwned =
                owner.empty() ? std::ranges::find(classes, each.className) != classes.end() : each.className == owner;
            bool const isMeant =
                each.name == word || (word.size() > 1 && word.ends_with('_') && each.name.starts_with(word));
            if (isOwned && isMeant && each.value.is_number()) {
                family.constants.push_back(&each);
            }
        }
        family.areBits |= word == "bits" && last.ends_with('_');
        last = word;
    }
    return family;
}

std::string nameOf(std::int64_t number, Family const& family)
{
    for (Constant const* const each : family.constants) {
        if (each->value == number) {
            return std::string(each->name);
        }
    }
    std::string names;
    for (Constant const* const each : family.constants) {
        auto const bit = each->value.get<std::int64_t>();
        if (family.areBits && bit != 0 && (number & bit) == bit) {
            names += (names.empty() ? "" : "|") + std::string(each->name);
            number &= ~bit;
        }
    }
    return number == 0 ? names : std::string();
}

std::string_view commentOf(Place const& place)
{
    return place.record != nullptr ? place.record->commentOf(place.field) : std::string_view();
}

// The constant of that name which a number at that place may be; null when there is none.
Constant const* find(Place const& place, Family const& family, std::string_view name)
{
    for (std::string_view const className : place.classes) {
        Constant const* const found = find(className, name);
        if (found != nullptr && found->value.is_number()) {
            return found;
        }
    }
    auto const found = std::ranges::find(family.constants, name, &Constant::name);
    return found != family.constants.end() ? *found : nullptr;
}

// Why a word stands for no number at that place.
std::string unknown(std::string_view word, Place const& place, Family const& family)
{
    std::string text = '\'' + printable(word) + "' is neither a number nor ";
    if (family.constants.empty() || family.constants.size() > mostNamed) {
        return text + "a constant of " + std::string(place.classes[0]);
    }
    text += "one of ";
    for (Constant const* const each : family.constants) {
        text += (each == family.constants.front() ? "" : ", ") + std::string(each->name);
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
    Family const family = familyIn(commentOf(place), place.classes);
    std::int64_t bits = 0;
    for (std::string_view const part : parts) {
        Constant const* const found = find(place, family, part);
        std::optional<std::int64_t> const number = found != nullptr ? found->value.get<std::int64_t>() : numberOf(part);
        if (!number) {
            return unknown(part, place, family);
        }
        bits |= *number;
    }
    value = bits;
    return {};
}

std::vector<std::string_view> classesOf(Class const* type, Operation const& operation)
{
    std::vector<std::string_view> classes;
    addChain(type, classes);
    addChain(findClass(operation.classId), classes);
    return classes;
}

} // namespace

std::vector<Constant const*> constantsOf(Class const& type)
{
    std::vector<Constant const*> own;
    for (Constant const& each : allConstants()) {
        if (each.className == type.name) {
            own.push_back(&each);
        }
    }
    return own;
}

std::string resolveConstants(Class const& type, Operation const& operation, Type const& parameter, Value& value)
{
    std::vector<std::string_view> const classes = classesOf(&type, operation);
    std::string wrong;
    forEachInteger(parameter, value, {nullptr, "", classes}, [&wrong](Value& integer, Place const& place) {
        if (wrong.empty() && integer.is_string()) {
            wrong = resolve(integer.get<std::string>(), place, integer);
        }
    });
    return wrong;
}

void nameConstants(Operation const& operation, Value& values)
{
    std::vector<std::string_view> const classes = classesOf(nullptr, operation);
    Family const ofOperation = familyIn(operation.comment(), classes);
    auto const name = [&](Type const& type, Value& value) {
        forEachInteger(type, value, {nullptr, "", classes}, [&](Value& integer, Place const& place) {
            Family const family = place.field.empty() ? ofOperation : familyIn(commentOf(place), place.classes);
            std::string const named =
                integer.is_number_integer() ? nameOf(integer.get<std::int64_t>(), family) : std::string();
            if (!named.empty()) {
                integer = named;
            }
        });
    };
    if (operation.result != nullptr && values.contains("result")) {
        name(*operation.result, values["result"]);
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        std::string const parameter(names[i]);
        if (values.contains(parameter)) {
            name(*operation.parameters[i].type, values[parameter]);
        }
    }
}

} // namespace trs::catalogue
