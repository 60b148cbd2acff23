// The verbs that ask a unit.
#pragma once

#include "tools/catalogue/Call.h"
#include "tools/catalogue/ObjectName.h"
#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"

#include <chrono>
#include <string>
#include <vector>

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

private:
    struct Target {
        catalogue::ObjectName name;
        catalogue::Class const* type = nullptr;
        TipprmiObjectClient object;
    };
    struct Branch;

    ExitCode connect(std::string const& text, Target& target);
    ExitCode carryOut(Target const& target, catalogue::Operation const& operation,
                      std::vector<std::string> const& arguments);
    ExitCode callByName(std::string const& object, std::string const& name, std::vector<std::string> const& prefixes,
                        std::vector<std::string> const& arguments);
    ExitCode complain(Target const& target, catalogue::Operation const& operation,
                      catalogue::Outcome const& outcome) const;
    static std::string describe(catalogue::Operation const& operation, catalogue::Outcome const& outcome);

    Options options_;
};
