#include "clients/services/PerformanceServiceSkeleton.h"
#include "rmi/Call.h"
#include "rmi/TypedSkeleton.h"

template class TypedSkeleton<PerformanceServiceSkeleton, PerformanceServiceClient>;

PerformanceServiceClient::ClientSpecificMetaObject PerformanceServiceClient::oMeta;
TreflectMetaObject* PerformanceServiceClient::staticMeta() { return oMeta.completed(); }

bool PerformanceServiceClient::getCurrentData(unsigned long const& id, unsigned long& value) const
{
    return call<&PerformanceServiceClient::getCurrentData>(*this, id, value);
}
bool PerformanceServiceClient::getHistoricData(unsigned long const& id, unsigned long& count,
                                               TipprmiArray<unsigned long, 96>& history) const
{
    return call<&PerformanceServiceClient::getHistoricData>(*this, id, count, history);
}
bool PerformanceServiceClient::getAdapterData(TipprmiSequence<unsigned long> const& ids,
                                              TipprmiSequence<IdentData_t>& data) const
{
    return call<&PerformanceServiceClient::getAdapterData>(*this, ids, data);
}
bool PerformanceServiceClient::getElapsedTime(unsigned long& elapsed) const
{
    return call<&PerformanceServiceClient::getElapsedTime>(*this, elapsed);
}
bool PerformanceServiceClient::existMonitoring(unsigned long const& id, bool& exists) const
{
    return call<&PerformanceServiceClient::existMonitoring>(*this, id, exists);
}
bool PerformanceServiceClient::startMonitoring(unsigned long const& id, bool& done) const
{
    return call<&PerformanceServiceClient::startMonitoring>(*this, id, done);
}
bool PerformanceServiceClient::stopMonitoring(unsigned long const& id, bool& done) const
{
    return call<&PerformanceServiceClient::stopMonitoring>(*this, id, done);
}
bool PerformanceServiceClient::resetMonitoring(bool& done) const
{
    return call<&PerformanceServiceClient::resetMonitoring>(*this, done);
}
void PerformanceServiceClient::trigger(std::string const& name, TipprmiSequence<unsigned long> const& ids,
                                       unsigned long const& value) const
{
    call<&PerformanceServiceClient::trigger>(*this, name, ids, value);
}
void PerformanceServiceClient::setCurrentData(unsigned long const& id) const
{
    call<&PerformanceServiceClient::setCurrentData>(*this, id);
}
void PerformanceServiceClient::setHistoricData(unsigned long const& id,
                                               TipprmiArray<unsigned long, 96> const& history) const
{
    call<&PerformanceServiceClient::setHistoricData>(*this, id, history);
}
void PerformanceServiceClient::setAdapterData(TipprmiSequence<IdentData_t> const& data) const
{
    call<&PerformanceServiceClient::setAdapterData>(*this, data);
}
void PerformanceServiceClient::setExistMonitoring(unsigned long const& id) const
{
    call<&PerformanceServiceClient::setExistMonitoring>(*this, id);
}
