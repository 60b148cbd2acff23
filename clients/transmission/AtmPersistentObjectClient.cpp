#include "clients/transmission/AtmPersistentObjectClient.h"

#include "rmi/Call.h"

AtmPersistentObjectClient::ClientSpecificMetaObject AtmPersistentObjectClient::oMeta;
TreflectMetaObject* AtmPersistentObjectClient::staticMeta() { return oMeta.completed(); }

bool AtmPersistentObjectClient::hasLocationId() const { return call<&AtmPersistentObjectClient::hasLocationId>(*this); }
LocationIdClient AtmPersistentObjectClient::getLocationId() const
{
    return call<&AtmPersistentObjectClient::getLocationId>(*this);
}
PerformanceServiceClient AtmPersistentObjectClient::getPerformanceSvc() const
{
    return call<&AtmPersistentObjectClient::getPerformanceSvc>(*this);
}
bool AtmPersistentObjectClient::isEmpty() const { return call<&AtmPersistentObjectClient::isEmpty>(*this); }
ResponseInfo<GetClient> AtmPersistentObjectClient::getPmStatus() const
{
    return call<&AtmPersistentObjectClient::getPmStatus>(*this);
}
ResponseInfo<SetClient> AtmPersistentObjectClient::enablePm() const
{
    return call<&AtmPersistentObjectClient::enablePm>(*this);
}
ResponseInfo<SetClient> AtmPersistentObjectClient::disablePm() const
{
    return call<&AtmPersistentObjectClient::disablePm>(*this);
}
