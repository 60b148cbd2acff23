#include "clients/services/FaultServiceSkeleton.h"
#include "rmi/Call.h"
#include "rmi/TypedSkeleton.h"

template class TypedSkeleton<FaultServiceSkeleton, FaultServiceClient>;

FaultServiceClient::ClientSpecificMetaObject FaultServiceClient::oMeta;
TreflectMetaObject* FaultServiceClient::staticMeta() { return oMeta.completed(); }

AdminStateClient FaultServiceClient::getAdminState() const { return call<&FaultServiceClient::getAdminState>(*this); }
long FaultServiceClient::getOperState() const { return call<&FaultServiceClient::getOperState>(*this); }
bool FaultServiceClient::getWorkingState() const { return call<&FaultServiceClient::getWorkingState>(*this); }
FaultServiceClient FaultServiceClient::getConditionGrp() const
{
    return call<&FaultServiceClient::getConditionGrp>(*this);
}
void FaultServiceClient::setOperState(long const& state) const
{
    call<&FaultServiceClient::setOperState>(*this, state);
}
void FaultServiceClient::setWorkingState(bool const& working) const
{
    call<&FaultServiceClient::setWorkingState>(*this, working);
}
bool FaultServiceClient::isAnySuppressed() const { return call<&FaultServiceClient::isAnySuppressed>(*this); }
bool FaultServiceClient::isAnyActive() const { return call<&FaultServiceClient::isAnyActive>(*this); }
bool FaultServiceClient::conditionActive() const { return call<&FaultServiceClient::conditionActive>(*this); }
void FaultServiceClient::removeAllConditions() const { call<&FaultServiceClient::removeAllConditions>(*this); }
void FaultServiceClient::notificationFromCondition(ConditionNotification const& notification,
                                                   ConditionClient const& condition) const
{
    call<&FaultServiceClient::notificationFromCondition>(*this, notification, condition);
}
