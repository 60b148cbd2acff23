// A policy of an administrative state that the unit has itself: what AdminStatePolicyClient reaches.
#pragma once

#include "clients/services/AdminStatePolicyClient.h"
#include "rmi/Servant.h"

#include <functional>
#include <string>

namespace trs::sim {

class Policy {
public:
    // `permits` is asked for the policy's state.
    Policy(std::string const& owner, std::function<bool()> permits);

    auto proxy() const { return AdminStatePolicyClient(&servant_); }

private:
    Servant servant_;
};

} // namespace trs::sim
