// AdminStatePolicyClient and AdminStateClient.
#include "clients/services/AdminStatePolicySkeleton.h"
#include "clients/services/AdminStateSkeleton.h"
#include "rmi/Call.h"
#include "rmi/TypedSkeleton.h"

template class TypedSkeleton<AdminStatePolicySkeleton, AdminStatePolicyClient>;
template class TypedSkeleton<AdminStateSkeleton, AdminStateClient, QelLongSkeleton>;

AdminStatePolicyClient::ClientSpecificMetaObject AdminStatePolicyClient::oMeta;
AdminStateClient::ClientSpecificMetaObject AdminStateClient::oMeta;
TreflectMetaObject* AdminStatePolicyClient::staticMeta() { return oMeta.completed(); }
TreflectMetaObject* AdminStateClient::staticMeta() { return oMeta.completed(); }

bool AdminStatePolicyClient::getState() const { return call<&AdminStatePolicyClient::getState>(*this); }
void AdminStatePolicyClient::notifyStateChange() const { call<&AdminStatePolicyClient::notifyStateChange>(*this); }

TipprmiSequence<AdminStatePolicyClient> AdminStateClient::getPolicies() const
{
    return call<&AdminStateClient::getPolicies>(*this);
}
bool AdminStateClient::getPermissionState() const { return call<&AdminStateClient::getPermissionState>(*this); }
void AdminStateClient::insertPolicy(AdminStatePolicyClient const& policy) const
{
    call<&AdminStateClient::insertPolicy>(*this, policy);
}
void AdminStateClient::removePolicy(AdminStatePolicyClient const& policy) const
{
    call<&AdminStateClient::removePolicy>(*this, policy);
}
void AdminStateClient::notifyPermissionStateChange() const
{
    call<&AdminStateClient::notifyPermissionStateChange>(*this);
}
