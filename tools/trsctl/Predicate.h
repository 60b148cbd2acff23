// What a person wants to be true of values.
#pragma once

#include "catalogue/Value.h"

#include <string>
#include <vector>

namespace trs::ctl {

// Comparisons, all of which must hold: "mtu>=1400 and flags~IFF__UP". The left side is a path as text output has it,
// the operator one of = != < <= > >= and ~, which means "contains". Where both sides are numbers, they are compared as
// such; a text is compared as it is, and not as a terminal shows it.
class Predicate {
public:
    // Holds always.
    Predicate() = default;
    // Empty, or what is wrong with the text.
    static std::string parse(std::string const& text, Predicate& predicate);

    // What is compared, in the order of the text.
    std::vector<std::string> paths() const;

    // A value without the path makes the comparison false.
    bool holds(catalogue::Value const& value) const;

private:
    struct Comparison {
        std::string path;
        std::string comparator;
        std::string operand;
    };

    std::vector<Comparison> comparisons_;
};

} // namespace trs::ctl
