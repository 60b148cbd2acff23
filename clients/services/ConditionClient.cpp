#include "clients/services/ConditionSkeleton.h"
#include "rmi/Call.h"
#include "rmi/TypedSkeleton.h"

template class TypedSkeleton<ConditionSkeleton, ConditionClient>;

ConditionClient::ClientSpecificMetaObject ConditionClient::oMeta;
TreflectMetaObject* ConditionClient::staticMeta() { return oMeta.completed(); }

long ConditionClient::getCurrentSeverity() const { return call<&ConditionClient::getCurrentSeverity>(*this); }
long ConditionClient::getDefaultSeverity() const { return call<&ConditionClient::getDefaultSeverity>(*this); }
long ConditionClient::getPriority() const { return call<&ConditionClient::getPriority>(*this); }
bool ConditionClient::getReportToExtern() const { return call<&ConditionClient::getReportToExtern>(*this); }
bool ConditionClient::disablesOperState() const { return call<&ConditionClient::disablesOperState>(*this); }
bool ConditionClient::isActive() const { return call<&ConditionClient::isActive>(*this); }
bool ConditionClient::isSuppressed() const { return call<&ConditionClient::isSuppressed>(*this); }
bool ConditionClient::isReportedToExtern() const { return call<&ConditionClient::isReportedToExtern>(*this); }
ResponseInfo<RunClient> ConditionClient::addToGroup(FaultServiceClient const& group) const
{
    return call<&ConditionClient::addToGroup>(*this, group);
}
ResponseInfo<RunClient> ConditionClient::removeFromGroup() const
{
    return call<&ConditionClient::removeFromGroup>(*this);
}
ResponseInfo<RunClient> ConditionClient::activateWithoutGroup() const
{
    return call<&ConditionClient::activateWithoutGroup>(*this);
}
ResponseInfo<RunClient> ConditionClient::deactivateWithoutGroup() const
{
    return call<&ConditionClient::deactivateWithoutGroup>(*this);
}
ResponseInfo<RunClient> ConditionClient::raise() const { return call<&ConditionClient::raise>(*this); }
ResponseInfo<RunClient> ConditionClient::cancel() const { return call<&ConditionClient::cancel>(*this); }
void ConditionClient::setCurrentSeverity(long const& severity) const
{
    call<&ConditionClient::setCurrentSeverity>(*this, severity);
}
void ConditionClient::setDefaultSeverity(long const& severity) const
{
    call<&ConditionClient::setDefaultSeverity>(*this, severity);
}
void ConditionClient::resetCurrentSeverity() const { call<&ConditionClient::resetCurrentSeverity>(*this); }
void ConditionClient::setReportToExtern(bool const& report) const
{
    call<&ConditionClient::setReportToExtern>(*this, report);
}
void ConditionClient::setPriority(long const& priority) const { call<&ConditionClient::setPriority>(*this, priority); }
ResponseInfo<RunClient> ConditionClient::suppress() const { return call<&ConditionClient::suppress>(*this); }
ResponseInfo<RunClient> ConditionClient::unsuppress() const { return call<&ConditionClient::unsuppress>(*this); }
