#include "catalogue/Constants.h"

#define HEADERS
#include "catalogue/Classes.inc" // made by classes.awk
#undef HEADERS

#include <algorithm>
#include <concepts>

namespace trs::catalogue {

namespace {

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

Constant const* findConstant(std::string_view className, std::string_view name)
{
    auto const found = std::ranges::find_if(
        allConstants(), [&](Constant const& each) { return each.className == className && each.name == name; });
    return found != allConstants().end() ? &*found : nullptr;
}

} // namespace trs::catalogue
