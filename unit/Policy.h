// A policy of an administrative state that the unit has itself: what AdminStatePolicyClient reaches.
#pragma once

#include "clients/services/AdminStatePolicyClient.h"
#include "unit/Object.h"

#include <functional>
#include <string>

namespace trs::sim {

class Policy {
public:
    // `permits` is asked for the policy's state.
    Policy(Inventory& inventory, std::string const& owner, std::function<bool()> permits);

    auto proxy() const { return object_.proxy<AdminStatePolicyClient>(); }

private:
    Object object_;
};

} // namespace trs::sim
