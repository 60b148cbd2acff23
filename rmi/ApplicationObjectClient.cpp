// ApplicationObjectSenaPolicyClient and ApplicationObjectClient, which refer to each other.
#include "rmi/ApplicationObjectSenaPolicySkeleton.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "rmi/Call.h"
#include "rmi/TypedSkeleton.h"

template class TypedSkeleton<ApplicationObjectSenaPolicySkeleton, ApplicationObjectSenaPolicyClient>;
template class TypedSkeleton<ApplicationObjectSkeleton, ApplicationObjectClient>;

ApplicationObjectSenaPolicyClient::ClientSpecificMetaObject ApplicationObjectSenaPolicyClient::oMeta;
ApplicationObjectClient::ClientSpecificMetaObject ApplicationObjectClient::oMeta;
TreflectMetaObject* ApplicationObjectSenaPolicyClient::staticMeta() { return oMeta.completed(); }
TreflectMetaObject* ApplicationObjectClient::staticMeta() { return oMeta.completed(); }

bool ApplicationObjectSenaPolicyClient::getState(ApplicationObjectClient const& application) const
{
    return call<&ApplicationObjectSenaPolicyClient::getState>(*this, application);
}

bool ApplicationObjectClient::hasLocationId() const { return call<&ApplicationObjectClient::hasLocationId>(*this); }
bool ApplicationObjectClient::getReportToExtern() const
{
    return call<&ApplicationObjectClient::getReportToExtern>(*this);
}
LocationIdClient ApplicationObjectClient::getLocationId() const
{
    return call<&ApplicationObjectClient::getLocationId>(*this);
}
FaultServiceClient ApplicationObjectClient::getFaultSvc() const
{
    return call<&ApplicationObjectClient::getFaultSvc>(*this);
}
PerformanceServiceClient ApplicationObjectClient::getPerformanceSvc() const
{
    return call<&ApplicationObjectClient::getPerformanceSvc>(*this);
}
ApplicationObjectClient ApplicationObjectClient::getConsumerIf() const
{
    return call<&ApplicationObjectClient::getConsumerIf>(*this);
}
ApplicationObjectClient ApplicationObjectClient::getProviderIf() const
{
    return call<&ApplicationObjectClient::getProviderIf>(*this);
}
TipprmiSequence<ApplicationObjectClient> ApplicationObjectClient::getServiceConsumers() const
{
    return call<&ApplicationObjectClient::getServiceConsumers>(*this);
}
TipprmiSequence<ApplicationObjectClient> ApplicationObjectClient::getServiceProviders() const
{
    return call<&ApplicationObjectClient::getServiceProviders>(*this);
}
ResponseInfo<SetClient> ApplicationObjectClient::setReportToExtern(bool const& report) const
{
    return call<&ApplicationObjectClient::setReportToExtern>(*this, report);
}
ResponseInfo<SetClient> ApplicationObjectClient::isSupportedBy(ApplicationObjectClient const& provider) const
{
    return call<&ApplicationObjectClient::isSupportedBy>(*this, provider);
}
ResponseInfo<SetClient> ApplicationObjectClient::isNoLongerSupportedBy(ApplicationObjectClient const& provider) const
{
    return call<&ApplicationObjectClient::isNoLongerSupportedBy>(*this, provider);
}
ResponseInfo<SetClient> ApplicationObjectClient::requestSupportRelease(ApplicationObjectClient const& other,
                                                                       bool& granted) const
{
    return call<&ApplicationObjectClient::requestSupportRelease>(*this, other, granted);
}
ResponseInfo<SetClient> ApplicationObjectClient::startSupportOf(ApplicationObjectClient const& consumer) const
{
    return call<&ApplicationObjectClient::startSupportOf>(*this, consumer);
}
ResponseInfo<SetClient> ApplicationObjectClient::stopSupportOf(ApplicationObjectClient const& consumer) const
{
    return call<&ApplicationObjectClient::stopSupportOf>(*this, consumer);
}
ResponseInfo<SetClient> ApplicationObjectClient::createPerformanceSvc() const
{
    return call<&ApplicationObjectClient::createPerformanceSvc>(*this);
}
ResponseInfo<SetClient> ApplicationObjectClient::destroyPerformanceSvc() const
{
    return call<&ApplicationObjectClient::destroyPerformanceSvc>(*this);
}
void ApplicationObjectClient::checkSenaState() const { call<&ApplicationObjectClient::checkSenaState>(*this); }
void ApplicationObjectClient::setSenaPolicy(ApplicationObjectSenaPolicyClient const& policy) const
{
    call<&ApplicationObjectClient::setSenaPolicy>(*this, policy);
}
void ApplicationObjectClient::clearSenaPolicy() const { call<&ApplicationObjectClient::clearSenaPolicy>(*this); }
void ApplicationObjectClient::ready() const { call<&ApplicationObjectClient::ready>(*this); }
void ApplicationObjectClient::reset() const { call<&ApplicationObjectClient::reset>(*this); }
