// AdminStatePolicyClient: a policy of an administrative state, handed out by AdminStateClient::getPolicies().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"

// A yes-or-no state of its own that takes part in the permission state of the administrative state it belongs to.
class AdminStatePolicyClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    AdminStatePolicyClient() = default;
    explicit AdminStatePolicyClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<AdminStatePolicyClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the policy's state; false when the call fails.
    virtual bool getState() const;
    // Tells those who observe the policy that its state changed.
    virtual void notifyStateChange() const;
};
