// The objects that results of calls refer to.
#pragma once

#include "tools/catalogue/Class.h"
#include "tools/catalogue/Value.h"

#include <string>
#include <vector>

// As "Class:identifier", in the order of the results, which are those of a call that is done.
std::vector<std::string> referencesIn(catalogue::Operation const& operation, catalogue::Value const& results);
