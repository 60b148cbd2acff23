// The words of a command line that are an operation's arguments.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <functional>
#include <string>
#include <vector>

namespace trs::ctl {

// Puts words where they belong among the in-parameters of an operation: "VALUE" in their order, "NAME=VALUE", and
// "NAME.PART=VALUE" for a part of a record or a list, whose other parts stay as they are.
class Arguments {
public:
    explicit Arguments(catalogue::Operation const& operation);

    // Takes a word. Empty, or what is wrong with it.
    std::string take(std::string const& word);
    // Whether there are parts, and read() needs what there is now.
    bool hasParts() const { return !parts_.empty(); }
    // The values. `now`: those that parts are put into, of all in-parameters, or none: then zero, or the least that is
    // allowed. Empty, or what is wrong.
    std::string read(catalogue::Class const& type, std::vector<catalogue::Value> const& now,
                     std::vector<catalogue::Value>& values) const;

private:
    struct Part {
        std::size_t parameter;
        std::string path; // ".vlanId", "[2].gateway"
        std::string text;
    };

    std::string readWhole(catalogue::Class const& type, std::size_t parameter, bool isKnown,
                          catalogue::Value& value) const;
    std::string readPart(catalogue::Class const& type, Part const& part, catalogue::Value& value) const;
    std::size_t find(std::string const& name) const;
    std::string whyNoName(std::string const& name, std::size_t next) const;

    catalogue::Operation const& operation_;
    std::vector<std::string_view> const names_;
    std::vector<std::string> texts_;
    std::vector<bool> isGiven_;
    std::vector<Part> parts_;
};

} // namespace trs::ctl
