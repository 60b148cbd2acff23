// The verbs: each file NAME.cpp in verbs/ has a function addNAMEVerbs(), which adds its own. The build lists the files.
#pragma once

namespace trs::ctl {

class Program;

#define VERBS_OF(Name) void add##Name##Verbs(Program& program);
#include "tools/trsctl/Verbs.inc" // made by CMake
#undef VERBS_OF

} // namespace trs::ctl
