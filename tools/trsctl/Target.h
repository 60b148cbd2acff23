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

// A class by name, in whatever case where only one is called so. Null, and said with what may be meant, when there is
// none.
catalogue::Class const* findClass(std::string const& name);

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

// catalogue::call(), where false from an operation that does not read is a refusal.
catalogue::Outcome callTarget(Target const& target, catalogue::Operation const& operation,
                              std::vector<catalogue::Value> const& in);

// Says why a call has no results; of one that was refused, what limits its arguments are beyond.
ExitCode complain(Target const& target, catalogue::Operation const& operation, catalogue::Outcome const& outcome,
                  std::vector<catalogue::Value> const& in = {});
// The same as data: what a unit says is in it as it is.
std::string whyNoResults(catalogue::Operation const& operation, catalogue::Outcome const& outcome,
                         std::vector<catalogue::Value> const& in = {});
// Points out what limits the arguments of a call that was not refused are beyond.
void noteLimits(catalogue::Operation const& operation, std::vector<catalogue::Value> const& in);

// Whether an object is what a command line calls it, by what came of calls to it.
class Identification {
public:
    explicit Identification(catalogue::Class const& type);
    void add(catalogue::Operation const& operation, catalogue::Outcome const& outcome);

    // A call that shows that the object is not there, or of another class: it has none of the operations that its
    // supposed class reads by. Null when there is none.
    catalogue::Operation const* failed() const { return failed_; }
    catalogue::Outcome const& outcome() const { return outcome_; }

private:
    std::uint32_t judge_ = 0; // the class whose operations decide: the most derived that has any that read
    std::size_t unanswered_ = 0;
    catalogue::Operation const* failed_ = nullptr;
    catalogue::Outcome outcome_;
};

} // namespace trs::ctl
