// ApplicationObjectClient: the root proxy of every managed object that takes part in fault and performance supervision
// and in support relations between objects.
#pragma once

#include "clients/services/FaultServiceClient.h"
#include "clients/services/LocationIdClient.h"
#include "clients/services/PerformanceServiceClient.h"
#include "platform/TipprmiForward.h"
#include "platform/TreflectObject.h"
#include "rmi/ApplicationObjectSenaPolicyClient.h"
#include "rmi/MetaObject.h"
#include "rmi/ResponseInfo.h"

// Most proxies derive from it. It leads to the object's location identity, fault service, performance service and
// support relations, and attaches a support policy. Operations with a plain result return an unbound proxy, an empty
// sequence or false when the call fails.
class ApplicationObjectClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    ApplicationObjectClient() = default;
    explicit ApplicationObjectClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<ApplicationObjectClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // A priority for support policies.
    static constexpr int SENA_PRIORITY = 100;

    // Reads whether the object has a location identity.
    virtual bool hasLocationId() const;
    // Reads whether the object's conditions are reported to the outside.
    virtual bool getReportToExtern() const;
    // Reads the location identity.
    virtual LocationIdClient getLocationId() const;
    // Reads the fault service.
    virtual FaultServiceClient getFaultSvc() const;
    // Reads the performance service; unbound when the object has none.
    virtual PerformanceServiceClient getPerformanceSvc() const;
    // Reads the object through which this one consumes services.
    virtual ApplicationObjectClient getConsumerIf() const;
    // Reads the object through which this one provides services.
    virtual ApplicationObjectClient getProviderIf() const;
    // Reads the objects that this one supports.
    virtual TipprmiSequence<ApplicationObjectClient> getServiceConsumers() const;
    // Reads the objects that support this one.
    virtual TipprmiSequence<ApplicationObjectClient> getServiceProviders() const;
    // Sets whether the object's conditions are reported to the outside.
    virtual ResponseInfo<SetClient> setReportToExtern(bool const& report) const;
    // Records that `provider` supports this object.
    virtual ResponseInfo<SetClient> isSupportedBy(ApplicationObjectClient const& provider) const;
    // Records that `provider` no longer supports this object.
    virtual ResponseInfo<SetClient> isNoLongerSupportedBy(ApplicationObjectClient const& provider) const;
    // Asks to end the support of `other`; `granted` tells whether that was granted.
    virtual ResponseInfo<SetClient> requestSupportRelease(ApplicationObjectClient const& other, bool& granted) const;
    // Starts supporting `consumer`.
    virtual ResponseInfo<SetClient> startSupportOf(ApplicationObjectClient const& consumer) const;
    // Stops supporting `consumer`.
    virtual ResponseInfo<SetClient> stopSupportOf(ApplicationObjectClient const& consumer) const;
    // Gives the object a performance service.
    virtual ResponseInfo<SetClient> createPerformanceSvc() const;
    // Takes the performance service away.
    virtual ResponseInfo<SetClient> destroyPerformanceSvc() const;
    // Makes the server check the support state; what that does, it decides.
    virtual void checkSenaState() const;
    // Attaches a support policy.
    virtual void setSenaPolicy(ApplicationObjectSenaPolicyClient const& policy) const;
    // Detaches the support policy.
    virtual void clearSenaPolicy() const;
    // Tells the object that it may begin its work; what that does, the server decides.
    virtual void ready() const;
    // Resets the object; what that does, the server decides.
    virtual void reset() const;
};
