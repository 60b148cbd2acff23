#include "tools/trsctl/Complaint.h"

#include <cstdio>

namespace trs::ctl {

ExitCode complain(std::string const& what, ExitCode code)
{
    std::fprintf(stderr, "%s\n", what.c_str());
    return code;
}

} // namespace trs::ctl
