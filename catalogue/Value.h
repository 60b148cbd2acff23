// Values of any type of the catalogue, and as they travel.
#pragma once

#include "catalogue/Class.h"

#include <nlohmann/json.hpp>
#include <string>

class TipprmiStream;

namespace trs::catalogue {

// Booleans, numbers and texts as themselves; enumerations by name, or number where there is none; sequences as arrays;
// records as objects by field; references to objects as "Class:identifier", null for none. Arrays of four shorts that
// are octets are "10.0.0.1", of six "02:00:5e:10:00:01"; other arrays are arrays.
using Value = nlohmann::ordered_json;

// Whether values of the type may be such an address.
bool isAddress(Type const& type);

// Null where the stream has failed, which it tells.
Value readValue(TipprmiStream& stream, Type const& type);

// 0, false, empty, null; of records and arrays such parts.
Value zero(Type const& type);

// Appends the value. Empty, or what is wrong with it: the place in it and the offending part as it was given,
// unescaped.
std::string writeValue(TipprmiStream& stream, Type const& type, Value const& value);

// Appends the status of a get, set or run operation, as the unit's side does.
void writeStatus(TipprmiStream& stream, bool isDone);

} // namespace trs::catalogue
