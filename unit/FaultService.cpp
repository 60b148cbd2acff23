#include "unit/FaultService.h"

#include "broker/PrintableText.h"
#include "clients/services/FaultServiceSkeleton.h"
#include "unit/Journal.h"

#include <algorithm>

namespace trs::sim {

FaultService::FaultService(Inventory& inventory, std::string const& owner, std::vector<Condition::Kind> const& kinds)
    : object_(inventory, owner + "/FaultService", reflect::className<FaultServiceClient>),
      policy_(inventory, owner, [this] { return isEnabled(); }), adminState_(inventory, owner, policy_.proxy())
{
    for (Condition::Kind const& kind : kinds) {
        conditions_.emplace_back(inventory, kind, owner, *this);
    }
    object_.facts().add("isSetEnabled", isSetEnabled_);
    object_.facts().addTold<&FaultServiceClient::getWorkingState>(isWorking_);
    object_.onSettle([this] {
        checkEnabled();
        return std::string();
    });
    serveStates();
    serveConditions();
}

void FaultService::serveStates()
{
    object_.servant()
        .on<&FaultServiceClient::getAdminState>([this] { return adminState_.proxy(); })
        .on<&FaultServiceClient::getOperState>(
            [this] { return long{isEnabled() ? FaultServiceClient::ENABLED : FaultServiceClient::DISABLED}; })
        .on<&FaultServiceClient::setOperState>([this](long const& state) {
            if (state == FaultServiceClient::ENABLED || state == FaultServiceClient::DISABLED) {
                isSetEnabled_ = state == FaultServiceClient::ENABLED;
                checkEnabled(IsTold::byExecution);
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
    object_.servant()
        .on<&FaultServiceClient::getConditionGrp>([this] { return proxy(); })
        .on<&FaultServiceClient::isAnySuppressed>(
            [this] { return isAny([](Condition const& condition) { return condition.isSuppressed(); }); })
        .on<&FaultServiceClient::isAnyActive>(
            [this] { return isAny([](Condition const& condition) { return condition.isActive(); }); })
        .on<&FaultServiceClient::conditionActive>([this] {
            return isAny(
                [](Condition const& condition) { return condition.isReported() && !condition.isSuppressed(); });
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

void FaultService::take(FaultServiceClient::ConditionNotification event, Condition& condition)
{
    if (event == raised || event == cancelled) {
        condition.setReported(event == raised);
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
    return isSetEnabled_ && !isAny([](Condition const& condition) {
               return condition.isReported() && condition.disablesOperState() && !condition.isSuppressed();
           });
}

void FaultService::checkEnabled(IsTold isTold)
{
    if (wasEnabled_ != isEnabled()) {
        wasEnabled_ = !wasEnabled_;
        say(wasEnabled_ ? "operational state enabled" : "operational state disabled");
        long const state = wasEnabled_ ? FaultServiceClient::ENABLED : FaultServiceClient::DISABLED;
        object_.announce<&FaultServiceClient::getOperState>(state);
        if (isTold == IsTold::no) {
            object_.announce<&FaultServiceClient::setOperState>(state);
        }
        policy_.proxy().notifyStateChange();
        adminState_.checkPermission();
        object_.inventory().states().give();
    }
}

void FaultService::reset()
{
    for (Condition& condition : conditions_) {
        condition.cancel();
        condition.unsuppress();
    }
    isSetEnabled_ = true;
    object_.changed();
    checkEnabled();
    adminState_.set(AdminStateClient::DEFAULT);
}

} // namespace trs::sim
