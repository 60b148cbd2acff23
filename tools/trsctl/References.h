// The objects that results of calls refer to.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string>
#include <vector>

namespace trs::ctl {

// As "Class:identifier", in the order of the results, which are those of a call that is done.
std::vector<std::string> referencesIn(catalogue::Operation const& operation, catalogue::Value const& results);

} // namespace trs::ctl
