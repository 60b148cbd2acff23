#include "unit/FaultService.h"

#include "broker/PrintableText.h"
#include "clients/services/FaultServiceSkeleton.h"
#include "unit/Journal.h"

#include <algorithm>

namespace trs::sim {

FaultService::FaultService(std::string const& owner, std::vector<Condition::Kind> const& kinds)
    : policy_(owner, [this] { return isEnabled(); }), adminState_(owner, policy_.proxy()),
      servant_(TipprmiOID(owner + "/FaultService"))
{
    for (Condition::Kind const& kind : kinds) {
        conditions_.emplace_back(kind, owner, *this);
    }
    serveStates();
    serveConditions();
}

void FaultService::enter(Inventory& inventory) const
{
    inventory.add(proxy());
    inventory.add(adminState_.proxy());
    inventory.add(policy_.proxy());
    for (Condition const& condition : conditions_) {
        inventory.add(condition.proxy());
    }
}

void FaultService::serveStates()
{
    servant_.on<&FaultServiceClient::getAdminState>([this] { return adminState_.proxy(); })
        .on<&FaultServiceClient::getOperState>(
            [this] { return long{isEnabled() ? FaultServiceClient::ENABLED : FaultServiceClient::DISABLED}; })
        .on<&FaultServiceClient::setOperState>([this](long const& state) {
            if (state == FaultServiceClient::ENABLED || state == FaultServiceClient::DISABLED) {
                isSetEnabled_ = state == FaultServiceClient::ENABLED;
                checkEnabled();
            }
        })
        .on<&FaultServiceClient::getWorkingState>([this] { return isWorking_; })
        .on<&FaultServiceClient::setWorkingState>([this](bool const& working) {
            isWorking_ = working;
            say(working ? "working state: working" : "working state: not working");
        });
}

void FaultService::serveConditions()
{
    servant_.on<&FaultServiceClient::getConditionGrp>([this] { return proxy(); })
        .on<&FaultServiceClient::isAnySuppressed>(
            [this] { return isAny([](Condition const& condition) { return condition.isSuppressed(); }); })
        .on<&FaultServiceClient::isAnyActive>(
            [this] { return isAny([](Condition const& condition) { return condition.isActive(); }); })
        .on<&FaultServiceClient::conditionActive>([this] {
            return std::any_of(active_.begin(), active_.end(),
                               [](Condition const* condition) { return !condition->isSuppressed(); });
        })
        .on<&FaultServiceClient::removeAllConditions>([this] {
            for (Condition& condition : conditions_) {
                condition.leave();
            }
        })
        .on<&FaultServiceClient::notificationFromCondition>(
            [this](FaultServiceClient::ConditionNotification const& event, ConditionClient const& sender) {
                takeFromOutside(event, sender);
            });
}

template <class Test>
bool FaultService::isAny(Test test) const
{
    return std::any_of(conditions_.begin(), conditions_.end(), test);
}

Condition* FaultService::condition(std::string const& name)
{
    auto const found = std::find_if(conditions_.begin(), conditions_.end(),
                                    [&](Condition const& condition) { return condition.name() == name; });
    return found != conditions_.end() ? &*found : nullptr;
}

void FaultService::take(FaultServiceClient::ConditionNotification event, Condition const& condition)
{
    if (event == raised) {
        active_.insert(&condition);
    } else if (event == cancelled) {
        active_.erase(&condition);
    }
    checkEnabled();
}

// A report that came as a call: another process speaks for one of the conditions.
void FaultService::takeFromOutside(FaultServiceClient::ConditionNotification event, ConditionClient const& sender)
{
    auto const found = std::find_if(conditions_.begin(), conditions_.end(),
                                    [&](Condition const& condition) { return condition.proxy().isSameObject(sender); });
    if (found == conditions_.end() || !found->isMember()) {
        say("a report of '" + printable(sender.getOID().getIdString()) +
            "' is ignored: " + "it is no condition of the group");
        return;
    }
    say("report " + std::to_string(event) + " of condition " + found->name() + " received");
    take(event, *found);
}

bool FaultService::isEnabled() const
{
    return isSetEnabled_ && std::none_of(active_.begin(), active_.end(), [](Condition const* condition) {
               return condition->disablesOperState() && !condition->isSuppressed();
           });
}

void FaultService::checkEnabled()
{
    if (wasEnabled_ != isEnabled()) {
        wasEnabled_ = !wasEnabled_;
        say(wasEnabled_ ? "operational state enabled" : "operational state disabled");
        policy_.proxy().notifyStateChange();
        adminState_.checkPermission();
    }
}

void FaultService::reset()
{
    for (Condition& condition : conditions_) {
        condition.cancel();
        condition.unsuppress();
    }
    isSetEnabled_ = true;
    checkEnabled();
    adminState_.set(AdminStateClient::DEFAULT);
}

} // namespace trs::sim
