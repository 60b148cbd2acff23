// The constants that classes publish, and the numbers and texts that they stand for.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string>
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

// Replaces the names of constants by numbers in what a person wrote for this operation: NAME, or for bits NAME|NAME,
// wherever the type has an integer. Known are the constants of the class, of its bases, of the one that declares the
// operation, and of the one that a record belongs to. Empty, or what is wrong: the offending name.
std::string resolveConstants(Class const& type, Operation const& operation, Type const& parameter, Value& value);

// Replaces numbers by names where the headers say which constants a number is one of, and it is one: "a
// TRANSPORT_MODE_ constant", "IFF__ bits". The values are "result" and parameters by name, as many as there are.
void nameConstants(Operation const& operation, Value& values);

} // namespace trs::catalogue
