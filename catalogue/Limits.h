// The limits of values.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

// Where a value is outside the limits that the class publishes for it, X_MIN, X_MAX and X_STEP: a line for each.
// `value` is that of an in-parameter, `name` the parameter's.
std::vector<std::string> beyondLimits(Class const& type, Operation const& operation, std::string_view name,
                                      Type const& parameter, Value const& value);

} // namespace trs::catalogue
