// AtmPersistentObjectClient: an ATM object that its server stores; handed out as one of the classes that derive from
// it.
#pragma once

#include "clients/services/LocationIdClient.h"
#include "clients/services/PerformanceServiceClient.h"
#include "platform/QelPersistentObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

// The base of traffic descriptors, AAL5 profiles, connection termination points and cross-connections. Operations with
// a plain result return an unbound proxy or false when the call fails.
class AtmPersistentObjectClient : public QelPersistentObjectClient {
public:
    using Parent = QelPersistentObjectClient;
    using QelPersistentObjectClient::QelPersistentObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AtmPersistentObjectClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads whether the object has a location identity.
    virtual bool hasLocationId() const;
    // Reads the location identity.
    virtual LocationIdClient getLocationId() const;
    // Reads the performance service.
    virtual PerformanceServiceClient getPerformanceSvc() const;
    // Reads whether the object is empty; what counts as empty, the server decides.
    virtual bool isEmpty() const;
    // Reads the status of performance monitoring of the object. The status itself is the answer: a failed call cannot
    // be told from FAILED.
    virtual ResponseInfo<GetClient> getPmStatus() const;
    // Switches performance monitoring on.
    virtual ResponseInfo<SetClient> enablePm() const;
    // Switches performance monitoring off.
    virtual ResponseInfo<SetClient> disablePm() const;
};

template <>
struct Operations<AtmPersistentObjectClient>
    : OperationList<
          AtmPersistentObjectClient, 0xae4e8c49, Operation<0, &AtmPersistentObjectClient::hasLocationId>,
          Operation<1, &AtmPersistentObjectClient::getLocationId>,
          Operation<2, &AtmPersistentObjectClient::getPerformanceSvc>,
          Operation<3, &AtmPersistentObjectClient::isEmpty>, Operation<4, &AtmPersistentObjectClient::getPmStatus>,
          Operation<5, &AtmPersistentObjectClient::enablePm>, Operation<6, &AtmPersistentObjectClient::disablePm>> {};
