// JSON that comes from elsewhere.
#pragma once

#include "catalogue/Value.h"

#include <string>
#include <string_view>

namespace trs::catalogue {

constexpr int deepestJson = 100; // arrays and objects in each other: everything that handles values calls itself

// Empty, or what the text is instead: "no JSON", "JSON nested more than 100 levels deep"; nothing is made of it then.
std::string parseJson(std::string_view text, Value& value);

} // namespace trs::catalogue
