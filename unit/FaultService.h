// The fault service of the simulated object, with its conditions: what FaultServiceClient reaches.
#pragma once

#include "clients/services/FaultServiceClient.h"
#include "unit/AdminState.h"
#include "unit/Condition.h"
#include "unit/Object.h"
#include "unit/Policy.h"

#include <list>
#include <string>
#include <vector>

namespace trs::sim {

// A condition counts for the object when the service was told that it is active, and it is not suppressed. While one
// counts that disables the operational state, the service is disabled, and the policy that it has inserted into the
// administrative state does not permit operation.
class FaultService {
public:
    bool isEnabled() const;

    // What a condition reports.
    static constexpr auto raised = FaultServiceClient::CONDITION_NOTIFICATION_0;
    static constexpr auto cancelled = FaultServiceClient::CONDITION_NOTIFICATION_1;
    static constexpr auto suppressed = FaultServiceClient::CONDITION_NOTIFICATION_2;
    static constexpr auto unsuppressed = FaultServiceClient::CONDITION_NOTIFICATION_3;

    // With conditions of these kinds.
    FaultService(Inventory& inventory, std::string const& owner, std::vector<Condition::Kind> const& kinds);
    FaultService(FaultService const&) = delete;
    FaultService& operator=(FaultService const&) = delete;

    auto proxy() const { return object_.proxy<FaultServiceClient>(); }
    AdminState& adminState() { return adminState_; }
    std::list<Condition> const& conditions() const { return conditions_; }
    // The condition of that name; null when there is none.
    Condition* condition(std::string const& name);

    // A condition reports what happened to it.
    void take(FaultServiceClient::ConditionNotification event, Condition& condition);
    // Cancels and unsuppresses all conditions, enables and unlocks.
    void reset();

private:
    void serveStates();
    void serveConditions();
    void takeFromOutside(FaultServiceClient::ConditionNotification event, ConditionClient const& sender);
    template <class Test>
    bool isAny(Test test) const;
    // Whether observers of setOperState() are told of a change by its execution.
    enum class IsTold { no, byExecution };
    void checkEnabled(IsTold isTold = IsTold::no);

    bool isSetEnabled_ = true;
    bool isWorking_ = true;
    bool wasEnabled_ = true;
    Object object_;
    Policy policy_;
    AdminState adminState_;
    std::list<Condition> conditions_;
};

} // namespace trs::sim
