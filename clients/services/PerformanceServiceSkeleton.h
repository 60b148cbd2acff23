// PerformanceServiceSkeleton: the server's side of PerformanceServiceClient.
#pragma once

#include "clients/services/PerformanceServiceClient.h"
#include "rmi/Dispatch.h"

class PerformanceServiceSkeleton;
extern template class TypedSkeleton<PerformanceServiceSkeleton, PerformanceServiceClient>;

class PerformanceServiceSkeleton : public TypedSkeleton<PerformanceServiceSkeleton, PerformanceServiceClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual bool getCurrentData(unsigned long const& id, unsigned long& value) = 0;
    virtual bool getHistoricData(unsigned long const& id, unsigned long& count,
                                 TipprmiArray<unsigned long, 96>& history) = 0;
    virtual bool getAdapterData(TipprmiSequence<unsigned long> const& ids,
                                TipprmiSequence<PerformanceServiceClient::IdentData_t>& data) = 0;
    virtual bool getElapsedTime(unsigned long& elapsed) = 0;
    virtual bool existMonitoring(unsigned long const& id, bool& exists) = 0;
    virtual bool startMonitoring(unsigned long const& id, bool& done) = 0;
    virtual bool stopMonitoring(unsigned long const& id, bool& done) = 0;
    virtual bool resetMonitoring(bool& done) = 0;
    virtual void trigger(std::string const& name, TipprmiSequence<unsigned long> const& ids,
                         unsigned long const& value) = 0;
    virtual void setCurrentData(unsigned long const& id) = 0;
    virtual void setHistoricData(unsigned long const& id, TipprmiArray<unsigned long, 96> const& history) = 0;
    virtual void setAdapterData(TipprmiSequence<PerformanceServiceClient::IdentData_t> const& data) = 0;
    virtual void setExistMonitoring(unsigned long const& id) = 0;
};

template <>
struct Operations<PerformanceServiceClient>
    : OperationList<
          PerformanceServiceClient, 0xeabdd29f,
          LocalOperation<0, &PerformanceServiceClient::getCurrentData, &PerformanceServiceSkeleton::getCurrentData>,
          LocalOperation<1, &PerformanceServiceClient::getHistoricData, &PerformanceServiceSkeleton::getHistoricData>,
          LocalOperation<2, &PerformanceServiceClient::getAdapterData, &PerformanceServiceSkeleton::getAdapterData>,
          LocalOperation<3, &PerformanceServiceClient::getElapsedTime, &PerformanceServiceSkeleton::getElapsedTime>,
          LocalOperation<4, &PerformanceServiceClient::existMonitoring, &PerformanceServiceSkeleton::existMonitoring>,
          LocalOperation<5, &PerformanceServiceClient::startMonitoring, &PerformanceServiceSkeleton::startMonitoring>,
          LocalOperation<6, &PerformanceServiceClient::stopMonitoring, &PerformanceServiceSkeleton::stopMonitoring>,
          LocalOperation<7, &PerformanceServiceClient::resetMonitoring, &PerformanceServiceSkeleton::resetMonitoring>,
          LocalOperation<8, &PerformanceServiceClient::trigger, &PerformanceServiceSkeleton::trigger>,
          LocalOperation<9, &PerformanceServiceClient::setCurrentData, &PerformanceServiceSkeleton::setCurrentData>,
          LocalOperation<10, &PerformanceServiceClient::setHistoricData, &PerformanceServiceSkeleton::setHistoricData>,
          LocalOperation<11, &PerformanceServiceClient::setAdapterData, &PerformanceServiceSkeleton::setAdapterData>,
          LocalOperation<12, &PerformanceServiceClient::setExistMonitoring,
                         &PerformanceServiceSkeleton::setExistMonitoring>> {};
