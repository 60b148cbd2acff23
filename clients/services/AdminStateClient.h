// AdminStateClient: the administrative state of a managed object, handed out by FaultServiceClient::getAdminState().
#pragma once

#include "clients/services/AdminStatePolicyClient.h"
#include "platform/QelLongClient.h"
#include "platform/TipprmiForward.h"
#include "rmi/MetaObject.h"

// A value (get() and set() of QelLongClient, one of the four constants) with a list of policies that decide whether
// it permits.
class AdminStateClient : public QelLongClient {
public:
    using Parent = QelLongClient;
    using QelLongClient::QelLongClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AdminStateClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The values the administrative state takes.
    static constexpr int UNLOCKED = 1;
    static constexpr int LOCKED = 2;
    static constexpr int SHUTTING_DOWN = 3;
    static constexpr int DEFAULT = 4;

    // Reads the policies; empty when the call fails.
    virtual TipprmiSequence<AdminStatePolicyClient> getPolicies() const;
    // Reads whether state and policies permit operation; false when the call fails.
    virtual bool getPermissionState() const;
    // Adds a policy.
    virtual void insertPolicy(AdminStatePolicyClient const& policy) const;
    // Takes a policy away; the server decides what becomes of one that was never inserted.
    virtual void removePolicy(AdminStatePolicyClient const& policy) const;
    // Tells those who observe the state that its permission state changed.
    virtual void notifyPermissionStateChange() const;
};
