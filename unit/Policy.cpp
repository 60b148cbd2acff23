#include "unit/Policy.h"

#include "clients/services/AdminStatePolicySkeleton.h"

#include <utility>

namespace trs::sim {

Policy::Policy(std::string const& owner, std::function<bool()> permits) : servant_(TipprmiOID(owner + "/Policy"))
{
    servant_.on<&AdminStatePolicyClient::getState>(std::move(permits))
        .on<&AdminStatePolicyClient::notifyStateChange>([] {});
}

} // namespace trs::sim
