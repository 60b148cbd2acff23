// The constants that classes publish, and the numbers and texts that they stand for.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string_view>
#include <vector>

namespace trs::catalogue {

struct Constant {
    std::string_view className;
    std::string_view name;
    Value value; // a number, a text or a boolean
};

// Those that the class itself publishes, in their order.
std::vector<Constant const*> constantsOf(Class const& type);

// Null when the class itself publishes none of that name.
Constant const* findConstant(std::string_view className, std::string_view name);

} // namespace trs::catalogue
