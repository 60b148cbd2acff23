#include "catalogue/Limits.h"

#include "catalogue/Constants.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <optional>

namespace trs::catalogue {

namespace {

// The class and its bases, each once.
void addWithBases(Class const* type, std::vector<Class const*>& classes)
{
    for (; type != nullptr; type = type->base()) {
        if (std::ranges::find(classes, type) == classes.end()) {
            classes.push_back(type);
        }
    }
}

// Calls `act` with each integer of a value, the field that it is in, if any, and the classes that may limit it.
using ActOnInteger = std::function<void(std::int64_t number, std::string_view field, std::vector<Class const*> const&)>;

void forEachNumber(Type const& type, Value const& value, std::string_view field,
                   std::vector<Class const*> const& classes, ActOnInteger const& act)
{
    if (value.is_number_integer()) {
        act(value.get<std::int64_t>(), field, classes);
    } else if (type.kind == Type::Kind::sequence && value.is_array()) {
        for (Value const& element : value) {
            forEachNumber(*type.element, element, field, classes, act);
        }
    } else if (type.kind == Type::Kind::record && value.is_object()) {
        std::vector<Class const*> withOwner = classes;
        addWithBases(findClass(type.name.substr(0, type.name.find(':'))), withOwner);
        for (Field const& each : type.fields) {
            if (auto const found = value.find(each.name); found != value.end()) {
                forEachNumber(*each.type, *found, each.name, withOwner, act);
            }
        }
    }
}

// Without case and underscores: what MIN_UDP_PORT and MinUdpPort have in common.
std::string squashed(std::string_view name)
{
    std::string text;
    for (char const each : name) {
        if (each != '_') {
            text += static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
        }
    }
    return text;
}

std::optional<std::int64_t> limit(std::vector<Class const*> const& classes, std::string const& what,
                                  std::string_view end)
{
    for (Class const* const type : classes) {
        for (Constant const* const each : constantsOf(*type)) {
            if (each->value.is_number() && each->name.ends_with(end) &&
                squashed(each->name.substr(0, each->name.size() - end.size())) == what) {
                return each->value.get<std::int64_t>();
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> beyondLimits(Class const& type, Operation const& operation, std::string_view name,
                                      Type const& parameter, Value const& value)
{
    std::vector<Class const*> classes;
    addWithBases(&type, classes);
    addWithBases(findClass(operation.classId), classes);
    std::vector<std::string> lines;
    constexpr std::string_view setter = "set";
    std::string const subject =
        squashed(operation.name.starts_with(setter) ? operation.name.substr(setter.size()) : name);
    forEachNumber(parameter, value, "", classes, [&](auto number, auto field, auto const& publishers) {
        std::string const what = field.empty() ? subject : squashed(field);
        auto const least = limit(publishers, what, "_MIN");
        auto const most = limit(publishers, what, "_MAX");
        auto const step = limit(publishers, what, "_STEP");
        std::string const shown = std::string(field.empty() ? name : field) + ' ' + std::to_string(number);
        if (least && most && (number < *least || number > *most)) {
            lines.push_back(shown + " is not from " + std::to_string(*least) + " to " + std::to_string(*most));
        } else if (least && step && *step > 1 && (number - *least) % *step != 0) {
            lines.push_back(shown + " is not in steps of " + std::to_string(*step) + " from " + std::to_string(*least));
        }
    });
    return lines;
}

} // namespace trs::catalogue
