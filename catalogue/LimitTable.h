// Which parts of which operations' arguments have limits, as the comments and the types state them.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Limits.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

// A value, or a part of one, that has limits or parts with limits.
struct LimitedValue {
    std::string name = {};                  // of a parameter or a field; empty of an element
    std::vector<Limit> limits = {};         // of the value itself
    std::vector<LimitedValue> fields = {};  // of a record
    std::vector<LimitedValue> element = {}; // of an array or a sequence: one or none
    std::size_t place = 0;                  // of a parameter, among the in-parameters
    bool isIn = true;                       // of a parameter

    bool isLimited() const { return !limits.empty() || !fields.empty() || !element.empty(); }
};

// Those of the operation's parameters, in their order, and of its result. Empty when there is none.
std::span<LimitedValue const> limitedValues(Operation const& operation);

// The same if this were the operation's comment. `wrong` gets a line for each limit that belongs to no parameter, or
// that its type cannot have, also of fields.
std::vector<LimitedValue> limitedValues(Operation const& operation, std::string_view comment,
                                        std::vector<std::string>& wrong);

} // namespace trs::catalogue
