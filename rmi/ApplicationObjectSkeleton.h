// ApplicationObjectSkeleton: the server's side of ApplicationObjectClient.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/Dispatch.h"

class ApplicationObjectSkeleton;
extern template class TypedSkeleton<ApplicationObjectSkeleton, ApplicationObjectClient>;

class ApplicationObjectSkeleton : public TypedSkeleton<ApplicationObjectSkeleton, ApplicationObjectClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual bool hasLocationId() = 0;
    virtual bool getReportToExtern() = 0;
    virtual LocationIdClient getLocationId() = 0;
    virtual FaultServiceClient getFaultSvc() = 0;
    virtual PerformanceServiceClient getPerformanceSvc() = 0;
    virtual ApplicationObjectClient getConsumerIf() = 0;
    virtual ApplicationObjectClient getProviderIf() = 0;
    virtual TipprmiSequence<ApplicationObjectClient> getServiceConsumers() = 0;
    virtual TipprmiSequence<ApplicationObjectClient> getServiceProviders() = 0;
    virtual ResponseInfo<SetClient> setReportToExtern(bool const& report) = 0;
    virtual ResponseInfo<SetClient> isSupportedBy(ApplicationObjectClient const& provider) = 0;
    virtual ResponseInfo<SetClient> isNoLongerSupportedBy(ApplicationObjectClient const& provider) = 0;
    virtual ResponseInfo<SetClient> requestSupportRelease(ApplicationObjectClient const& other, bool& granted) = 0;
    virtual ResponseInfo<SetClient> startSupportOf(ApplicationObjectClient const& consumer) = 0;
    virtual ResponseInfo<SetClient> stopSupportOf(ApplicationObjectClient const& consumer) = 0;
    virtual ResponseInfo<SetClient> createPerformanceSvc() = 0;
    virtual ResponseInfo<SetClient> destroyPerformanceSvc() = 0;
    virtual void checkSenaState() = 0;
    virtual void setSenaPolicy(ApplicationObjectSenaPolicyClient const& policy) = 0;
    virtual void clearSenaPolicy() = 0;
    virtual void ready() = 0;
    virtual void reset() = 0;
};

template <>
struct Operations<ApplicationObjectClient>
    : OperationList<
          ApplicationObjectClient, 0xe80e97c6,
          LocalOperation<1, &ApplicationObjectClient::hasLocationId, &ApplicationObjectSkeleton::hasLocationId>,
          LocalOperation<2, &ApplicationObjectClient::getReportToExtern, &ApplicationObjectSkeleton::getReportToExtern>,
          LocalOperation<3, &ApplicationObjectClient::getLocationId, &ApplicationObjectSkeleton::getLocationId>,
          LocalOperation<4, &ApplicationObjectClient::getFaultSvc, &ApplicationObjectSkeleton::getFaultSvc>,
          LocalOperation<5, &ApplicationObjectClient::getPerformanceSvc, &ApplicationObjectSkeleton::getPerformanceSvc>,
          LocalOperation<6, &ApplicationObjectClient::getConsumerIf, &ApplicationObjectSkeleton::getConsumerIf>,
          LocalOperation<7, &ApplicationObjectClient::getProviderIf, &ApplicationObjectSkeleton::getProviderIf>,
          LocalOperation<8, &ApplicationObjectClient::getServiceConsumers,
                         &ApplicationObjectSkeleton::getServiceConsumers>,
          LocalOperation<9, &ApplicationObjectClient::getServiceProviders,
                         &ApplicationObjectSkeleton::getServiceProviders>,
          LocalOperation<10, &ApplicationObjectClient::setReportToExtern,
                         &ApplicationObjectSkeleton::setReportToExtern>,
          LocalOperation<11, &ApplicationObjectClient::isSupportedBy, &ApplicationObjectSkeleton::isSupportedBy>,
          LocalOperation<12, &ApplicationObjectClient::isNoLongerSupportedBy,
                         &ApplicationObjectSkeleton::isNoLongerSupportedBy>,
          LocalOperation<13, &ApplicationObjectClient::requestSupportRelease,
                         &ApplicationObjectSkeleton::requestSupportRelease>,
          LocalOperation<14, &ApplicationObjectClient::startSupportOf, &ApplicationObjectSkeleton::startSupportOf>,
          LocalOperation<15, &ApplicationObjectClient::stopSupportOf, &ApplicationObjectSkeleton::stopSupportOf>,
          LocalOperation<16, &ApplicationObjectClient::createPerformanceSvc,
                         &ApplicationObjectSkeleton::createPerformanceSvc>,
          LocalOperation<17, &ApplicationObjectClient::destroyPerformanceSvc,
                         &ApplicationObjectSkeleton::destroyPerformanceSvc>,
          LocalOperation<18, &ApplicationObjectClient::checkSenaState, &ApplicationObjectSkeleton::checkSenaState>,
          LocalOperation<19, &ApplicationObjectClient::setSenaPolicy, &ApplicationObjectSkeleton::setSenaPolicy>,
          LocalOperation<20, &ApplicationObjectClient::clearSenaPolicy, &ApplicationObjectSkeleton::clearSenaPolicy>,
          LocalOperation<21, &ApplicationObjectClient::ready, &ApplicationObjectSkeleton::ready>,
          LocalOperation<22, &ApplicationObjectClient::reset, &ApplicationObjectSkeleton::reset>> {};
