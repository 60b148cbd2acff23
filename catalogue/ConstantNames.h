// Constants by name in values, where the values themselves have numbers.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string>

namespace trs::catalogue {

// Replaces the names of constants by numbers in what a person wrote for this operation: NAME, or for bits NAME|NAME,
// wherever the type has an integer. Known are the constants of the class, of its bases, of the one that declares the
// operation, and of the one that a record belongs to; in whatever case where only one can be meant. Empty, or what is
// wrong: the place in a value that has several, such as ".vlanId: ", and the offending name.
std::string resolveConstants(Class const& type, Operation const& operation, Type const& parameter, Value& value);

// Replaces numbers by names where the headers say which constants a number is one of, and it is one: "a
// TRANSPORT_MODE_ constant", "IFF__ bits". The values are "result" and parameters by name, as many as there are.
void nameConstants(Operation const& operation, Value& values);
// The same for an object of this class: what an attribute object keeps is by name too, where the class has constants.
void nameConstants(Class const& type, Operation const& operation, Value& values);

} // namespace trs::catalogue
