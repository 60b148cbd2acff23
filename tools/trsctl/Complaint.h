// What trsctl says when something is wrong.
#pragma once

#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"

#include <string>
#include <string_view>

namespace trs::ctl {

// What is said to people is said in this format from now on.
void setComplaintFormat(Format format);

// Says on standard error what is wrong, escaped where a terminal shows it; in JSON as an object a line:
//     {"error": "...", "kind": "deadline", "carriedOut": "unknown", "exitCode": 5}
// `kind` is that of the failed call, else "usage", "different", "lost" or the like; `carriedOut` "no", "yes" or
// "unknown". The exit code is the one that is given.
ExitCode complain(std::string const& what, ExitCode code = ExitCode::usage, std::string_view carriedOut = "no");
// The same for a call.
ExitCode complain(std::string const& what, CallFailure const& failure);

// Says what another process has said so, in JSON.
void passOn(catalogue::Value const& complaint);

// Says something else that is no failure; in JSON as {"note": "..."}.
void note(std::string const& what);

} // namespace trs::ctl
