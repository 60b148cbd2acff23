// JSON, also such as comes from elsewhere.
#pragma once

#include "catalogue/Value.h"

#include <string>
#include <string_view>

namespace trs::catalogue {

constexpr int deepestJson = 100; // arrays and objects in each other: everything that handles values calls itself

// Empty, or what the text is instead: "no JSON", "JSON nested more than 100 levels deep"; nothing is made of it then.
std::string parseJson(std::string_view text, Value& value);

// As JSON text; bytes that are no UTF-8 are replaced. Control characters are escaped, those behind ASCII too.
std::string toJson(Value const& value, int indent = 2);

} // namespace trs::catalogue
