// Values as people write and read them.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <functional>
#include <string>

namespace trs::catalogue {

// A value from text: a number (also 0x...), true or false, a name, an address, a plain text; for records, sequences and
// arrays JSON, or that of the file FILE as "@FILE"; any of them from standard input as "@-". Empty, or what is wrong
// with the text; writeValue() tells the rest.
std::string parseValue(Type const& type, std::string const& text, Value& value);

// Calls `visit` with each part that has none of its own, and its path, such as "addresses[0].ipAddress". An empty
// sequence is a part.
using LeafVisitor = std::function<void(std::string const& path, Value const& leaf)>;
void forEachLeaf(Value const& value, LeafVisitor const& visit, std::string const& path = {});

// Such a part as people read it: a text as it is, which a terminal needs escaped (broker/PrintableText.h); "none",
// "[]".
std::string textOf(Value const& leaf);

} // namespace trs::catalogue
