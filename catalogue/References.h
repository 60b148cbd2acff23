// The objects that results of calls refer to.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string>
#include <vector>

namespace trs::catalogue {

// As "Class:identifier", in the order of the results, which are those of a call that is done.
std::vector<std::string> referencesIn(Operation const& operation, Value const& results);

} // namespace trs::catalogue
