// The object that calls within the process are measured on. It is made in a source unit of its own and known here by
// its interface alone, so that no compiler sees through the calls.
#pragma once

#include "clients/services/ConditionSkeleton.h"

namespace bench {

// Its priority is 10.
ConditionSkeleton& condition();
// A proxy of it.
ConditionClient const& conditionProxy();

} // namespace bench
