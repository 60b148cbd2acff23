#include "unit/Policy.h"

#include "clients/services/AdminStatePolicySkeleton.h"

#include <utility>

namespace trs::sim {

Policy::Policy(Inventory& inventory, std::string const& owner, std::function<bool()> permits)
    : object_(inventory, owner + "/Policy", reflect::className<AdminStatePolicyClient>)
{
    object_.servant()
        .on<&AdminStatePolicyClient::getState>(std::move(permits))
        .on<&AdminStatePolicyClient::notifyStateChange>([] {});
}

} // namespace trs::sim
