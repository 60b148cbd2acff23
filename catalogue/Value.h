// Values of any type of the catalogue, as JSON and as people write them.
#pragma once

#include "catalogue/Class.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

class TipprmiStream;

namespace trs::catalogue {

// Booleans, numbers and texts as themselves; enumerations by name, or number where there is none; sequences as arrays;
// records as objects by field; references to objects as "Class:identifier", null for none. Arrays of four shorts that
// are octets are "10.0.0.1", of six "02:00:5e:10:00:01"; other arrays are arrays.
using Value = nlohmann::ordered_json;

// Null where the stream has failed, which it tells.
Value readValue(TipprmiStream& stream, Type const& type);

// 0, false, empty, null; of records and arrays such parts.
Value zero(Type const& type);

// Appends the value. Empty, or what is wrong with it: the place in it and the offending part.
std::string writeValue(TipprmiStream& stream, Type const& type, Value const& value);

// Appends the status of a get, set or run operation, as the unit's side does.
void writeStatus(TipprmiStream& stream, bool isDone);

// A value from text: a number (also 0x...), true or false, a name, an address, a plain text; for records, sequences and
// arrays JSON, or that of the file FILE as "@FILE". Empty, or what is wrong with the text; writeValue() tells the rest.
std::string parseValue(Type const& type, std::string const& text, Value& value);

// Calls `visit` with each part that has none of its own, and its path, such as "addresses[0].ipAddress". An empty
// sequence is a part.
using LeafVisitor = std::function<void(std::string const& path, Value const& leaf)>;
void forEachLeaf(Value const& value, LeafVisitor const& visit, std::string const& path = {});

// Such a part as people read it: a text as it is, which a terminal needs escaped (broker/PrintableText.h); "none",
// "[]".
std::string textOf(Value const& leaf);

// As JSON text; bytes that are no UTF-8 are replaced. Control characters are escaped, those behind ASCII too.
std::string toJson(Value const& value, int indent = 2);

} // namespace trs::catalogue
