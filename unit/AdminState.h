// The administrative state of the simulated object: what AdminStateClient reaches.
#pragma once

#include "clients/services/AdminStateClient.h"
#include "unit/Object.h"
#include "unit/ObjectList.h"

#include <string>

namespace trs::sim {

// Begins unlocked. It permits operation while it is unlocked and all policies do, and executes
// notifyPermissionStateChange() when that changes.
class AdminState {
public:
    // `policy` is the first one.
    AdminState(Inventory& inventory, std::string const& owner, AdminStatePolicyClient const& policy);
    AdminState(AdminState const&) = delete;
    AdminState& operator=(AdminState const&) = delete;

    auto proxy() const { return object_.proxy<AdminStateClient>(); }
    // UNLOCKED, LOCKED or SHUTTING_DOWN; DEFAULT stands for UNLOCKED. False for any other value.
    bool set(long state);
    // "unlocked, operation is permitted"
    std::string text() const;
    // Asks the policies anew.
    void checkPermission();

    // The state of a name as text() has it; 0 for any other name.
    static long stateOf(std::string const& name);

private:
    static bool isValid(long state);
    static char const* nameOf(long state);
    void serveValue();
    void servePolicies();
    bool isPermitted() const;

    long state_ = AdminStateClient::UNLOCKED;
    ObjectList<AdminStatePolicyClient> policies_;
    bool wasPermitted_ = true;
    Object object_;
};

} // namespace trs::sim
