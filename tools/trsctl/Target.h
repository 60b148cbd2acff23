// The object of a unit that a command line names, and calls of it.
#pragma once

#include "catalogue/Call.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "tools/trsctl/Program.h"

#include <string>
#include <vector>

namespace trs::ctl {

struct Target {
    std::string unit; // the endpoint
    catalogue::ObjectName name;
    catalogue::Class const* type = nullptr;
    TipprmiObjectClient object;
};

// Makes the unit the one to ask, and waits for the object as long as the options say. What is wrong is said.
ExitCode findTarget(Program::Options const& options, std::string const& text, Target& target);

// The operation that is meant, as catalogue::find() finds it. Null, and said, when there is none.
catalogue::Operation const* findOperation(Target const& target, std::string const& name,
                                          catalogue::OperationKind kind = catalogue::OperationKind::read);
// The same of a class.
catalogue::Operation const* findOperation(catalogue::Class const& type, std::string const& name,
                                          catalogue::OperationKind kind = catalogue::OperationKind::execute);

// The in-arguments of "NAME=VALUE" and plain "VALUE" words. What is wrong is said.
ExitCode readArguments(Target const& target, catalogue::Operation const& operation,
                       std::vector<std::string> const& words, std::vector<catalogue::Value>& values);

// Says why a call has no results.
ExitCode complain(Target const& target, catalogue::Operation const& operation, catalogue::Outcome const& outcome);
// The same as data: what a unit says is in it as it is.
std::string whyNoResults(catalogue::Operation const& operation, catalogue::Outcome const& outcome);

} // namespace trs::ctl
