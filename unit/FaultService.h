// The fault service of the simulated object, with its conditions: what FaultServiceClient reaches.
#pragma once

#include "clients/services/FaultServiceClient.h"
#include "rmi/Servant.h"
#include "unit/AdminState.h"
#include "unit/Condition.h"
#include "unit/Inventory.h"
#include "unit/Policy.h"

#include <list>
#include <set>
#include <string>
#include <vector>

namespace trs::sim {

// A condition counts for the object when the service was told that it is active, and it is not suppressed. While one
// counts that disables the operational state, the service is disabled, and the policy that it has inserted into the
// administrative state does not permit operation.
class FaultService {
public:
    // What a condition reports.
    static constexpr auto raised = FaultServiceClient::CONDITION_NOTIFICATION_0;
    static constexpr auto cancelled = FaultServiceClient::CONDITION_NOTIFICATION_1;
    static constexpr auto suppressed = FaultServiceClient::CONDITION_NOTIFICATION_2;
    static constexpr auto unsuppressed = FaultServiceClient::CONDITION_NOTIFICATION_3;

    // With conditions of these kinds.
    FaultService(std::string const& owner, std::vector<Condition::Kind> const& kinds);
    FaultService(FaultService const&) = delete;
    FaultService& operator=(FaultService const&) = delete;

    auto proxy() const { return FaultServiceClient(&servant_); }
    AdminState& adminState() { return adminState_; }
    // Enters it, its state and its conditions.
    void enter(Inventory& inventory) const;
    std::list<Condition> const& conditions() const { return conditions_; }
    // The condition of that name; null when there is none.
    Condition* condition(std::string const& name);

    // A condition reports what happened to it.
    void take(FaultServiceClient::ConditionNotification event, Condition const& condition);
    bool knowsAsActive(Condition const& condition) const { return active_.contains(&condition); }
    // Cancels and unsuppresses all conditions, enables and unlocks.
    void reset();

private:
    void serveStates();
    void serveConditions();
    void takeFromOutside(FaultServiceClient::ConditionNotification event, ConditionClient const& sender);
    template <class Test>
    bool isAny(Test test) const;
    bool isEnabled() const;
    void checkEnabled();

    bool isSetEnabled_ = true;
    bool isWorking_ = true;
    bool wasEnabled_ = true;
    std::set<Condition const*> active_; // those that reported so
    std::list<Condition> conditions_;
    Policy policy_;
    AdminState adminState_;
    Servant servant_;
};

} // namespace trs::sim
