// Operations that change lists, or ask them: what other than set and get an object without behaviour of its own can do.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <string_view>
#include <vector>

namespace trs::sim {

struct ListRule {
    enum class Effect {
        insert,   // adds what is given; refused when it is there
        remove,   // removes what is given, or the element that has it; refused when there is none
        clear,    // empties
        increase, // adds 1 to a number, and tells it
        decrease, // subtracts 1, and tells it; stays 0
        contains, // tells whether what is given is there
        find,     // tells the element that is given, if it is there
        isSet,    // tells whether an object reference leads anywhere
    };

    std::string_view className;
    std::string_view operation;
    Effect effect;
    std::string_view subject; // the operation that reads what is changed; one that no other reads stands for itself
};

// Null when no rule is about the operation.
ListRule const* ruleOf(catalogue::Operation const& operation);

// Carries out insert, remove and clear. False when it is refused. `type`: the list's, or of a single value, which is
// there or not; null for a list of what is given.
bool changeList(ListRule::Effect effect, catalogue::Type const* type, catalogue::Value& list,
                std::vector<catalogue::Value> const& arguments, std::vector<catalogue::Type const*> const& types);

// Whether `list` has the element, or is it.
bool contains(catalogue::Value const& list, catalogue::Value const& element);

} // namespace trs::sim
