#include "unit/AdminState.h"

#include "broker/PrintableText.h"
#include "broker/framework/QelOperations.h"
#include "clients/services/AdminStatePolicySkeleton.h"
#include "clients/services/AdminStateSkeleton.h"
#include "unit/Attribute.h"
#include "unit/Journal.h"

#include <algorithm>

namespace trs::sim {

AdminState::AdminState(Inventory& inventory, std::string const& owner, AdminStatePolicyClient const& policy)
    : object_(inventory, owner + "/AdminState", reflect::className<AdminStateClient>)
{
    policies_.insert(policy);
    serveValue();
    servePolicies();
    object_.facts().addTold<&QelLongClient::get>(state_, [this](long state) {
        bool const isState = isValid(state);
        state_ = isState ? state : state_;
        return isState;
    });
    object_.facts().addTold<&AdminStateClient::getPolicies>(policies_.list());
    object_.onSettle([this] {
        checkPermission();
        return std::string();
    });
}

void AdminState::serveValue()
{
    object_.servant()
        .on<&QelLongClient::get>([this] { return state_; })
        .on<&QelLongClient::set>([this](long const& state) { return set(state); })
        .on<&QelLongClient::internalGet>([this] { return state_; })
        .on<&QelLongClient::internalSet>([this](long const& state) { return set(state); });
    serveValueObject(object_.servant(), [this] { set(AdminStateClient::DEFAULT); });
}

void AdminState::servePolicies()
{
    object_.servant()
        .on<&AdminStateClient::getPolicies>([this] { return policies_.all(); })
        .on<&AdminStateClient::getPermissionState>([this] { return isPermitted(); })
        .on<&AdminStateClient::insertPolicy>([this](AdminStatePolicyClient const& policy) {
            if (policies_.insert(policy)) {
                say("policy " + printable(policy.getOID().getIdString()) + " inserted");
                checkPermission();
            }
        })
        .on<&AdminStateClient::removePolicy>([this](AdminStatePolicyClient const& policy) {
            if (policies_.remove(policy)) {
                say("policy " + printable(policy.getOID().getIdString()) + " removed");
                checkPermission();
            }
        })
        .on<&AdminStateClient::notifyPermissionStateChange>([] { say("permission state change announced"); });
}

bool AdminState::isValid(long state)
{
    return state >= AdminStateClient::UNLOCKED && state <= AdminStateClient::SHUTTING_DOWN;
}

bool AdminState::set(long state)
{
    long const wanted = state == AdminStateClient::DEFAULT ? AdminStateClient::UNLOCKED : state;
    if (!isValid(wanted)) {
        return false;
    }
    if (state_ != wanted) {
        state_ = wanted;
        object_.changed();
        say(std::string("administrative state ") + nameOf(state_));
        checkPermission();
    }
    return true;
}

// A policy may live in another process. While it is asked, others may change the list.
bool AdminState::isPermitted() const
{
    TipprmiSequence<AdminStatePolicyClient> const asked = policies_.all();
    return state_ == AdminStateClient::UNLOCKED &&
           std::all_of(asked.begin(), asked.end(),
                       [](AdminStatePolicyClient const& policy) { return policy.getState(); });
}

void AdminState::checkPermission()
{
    bool const isPermittedNow = isPermitted();
    if (wasPermitted_ != isPermittedNow) {
        wasPermitted_ = isPermittedNow;
        proxy().notifyPermissionStateChange();
    }
}

char const* AdminState::nameOf(long state)
{
    return state == AdminStateClient::LOCKED          ? "locked"
           : state == AdminStateClient::SHUTTING_DOWN ? "shutting-down"
                                                      : "unlocked";
}

long AdminState::stateOf(std::string const& name)
{
    for (long const state : {AdminStateClient::UNLOCKED, AdminStateClient::LOCKED, AdminStateClient::SHUTTING_DOWN}) {
        if (name == nameOf(state)) {
            return state;
        }
    }
    return 0;
}

std::string AdminState::text() const
{
    return nameOf(state_) + std::string(isPermitted() ? ", operation is permitted" : ", operation is not permitted");
}

} // namespace trs::sim
