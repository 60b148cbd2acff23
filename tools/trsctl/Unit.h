// The verbs that ask a unit.
#pragma once

#include "catalogue/Call.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace trs::ctl {

class Unit {
public:
    struct Options {
        std::string endpoint;
        std::chrono::milliseconds timeout; // for a call
        std::chrono::milliseconds wait;    // for the unit to be up
        Format format = Format::text;
    };

    explicit Unit(Options options) : options_(std::move(options)) {}

    // `get OBJECT NAME [VALUE...]`: a reading operation, by its name or what it reads: getMtu, mtu.
    ExitCode get(std::string const& object, std::string const& name, std::vector<std::string> const& arguments);
    // `set OBJECT NAME VALUE...`: setMtu, mtu.
    ExitCode set(std::string const& object, std::string const& name, std::vector<std::string> const& arguments);
    // `call OBJECT OPERATION [NAME=VALUE...]`: any operation; in-arguments by name or in their order.
    ExitCode call(std::string const& object, std::string const& name, std::vector<std::string> const& arguments);
    // `walk OBJECT`: every reading operation without in-arguments.
    ExitCode walk(std::string const& object);
    // `tree [OBJECT]`: the objects that reading operations lead to, down to `depth`.
    ExitCode tree(std::string const& object, int depth, bool isDot);

    // An object that a command line names.
    struct Target {
        catalogue::ObjectName name;
        catalogue::Class const* type = nullptr;
        TipprmiObjectClient object;
    };
    // Makes the unit the one to ask, and waits for the object as long as the options say. What is wrong is said.
    ExitCode connect(std::string const& text, Target& target) const;
    // The operation that is meant, as catalogue::find() finds it. Null, and said, when there is none.
    static catalogue::Operation const* findOperation(Target const& target, std::string const& name,
                                                     catalogue::OperationKind kind = catalogue::OperationKind::read);
    // The in-arguments of "NAME=VALUE" and plain "VALUE" words. What is wrong is said.
    static ExitCode readArguments(Target const& target, catalogue::Operation const& operation,
                                  std::vector<std::string> const& words, std::vector<catalogue::Value>& values);
    // Says why a call has no results.
    ExitCode complain(Target const& target, catalogue::Operation const& operation,
                      catalogue::Outcome const& outcome) const;
    // The same as data: what a unit says is in it as it is.
    static std::string describe(catalogue::Operation const& operation, catalogue::Outcome const& outcome);
    Options const& options() const { return options_; }

private:
    ExitCode carryOut(Target const& target, catalogue::Operation const& operation,
                      std::vector<std::string> const& arguments);
    // One of that kind, or any one by its own name.
    ExitCode callOne(std::string const& object, std::string const& name, std::optional<catalogue::OperationKind> kind,
                     std::vector<std::string> const& arguments);

    Options options_;
};

} // namespace trs::ctl
