// FaultServiceClient: the fault service of an application object, handed out by ApplicationObjectClient::getFaultSvc().
#pragma once

#include "clients/services/AdminStateClient.h"
#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Record.h"

class ConditionClient;

// Holds the object's administrative, operational and working state and the group of conditions raised against it.
class FaultServiceClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    FaultServiceClient() = default;
    explicit FaultServiceClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<FaultServiceClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // What a condition reports to its fault service. Proxies only send it; the fault service's server decides what
    // the values mean.
    enum ConditionNotification : int {
        CONDITION_NOTIFICATION_0 = 0,
        CONDITION_NOTIFICATION_1 = 1,
        CONDITION_NOTIFICATION_2 = 2,
        CONDITION_NOTIFICATION_3 = 3,
    };

    // Administrative states, as AdminStateClient has them.
    static constexpr int UNLOCKED = 1;
    static constexpr int LOCKED = 2;
    static constexpr int SHUTTING_DOWN = 3;
    static constexpr int DEFAULT = 4;
    // Operational states.
    static constexpr int ENABLED = 11;
    static constexpr int DISABLED = 12;

    // Reads the administrative state object; unbound when the call fails.
    virtual AdminStateClient getAdminState() const;
    // Reads the operational state, one of ENABLED..DISABLED; 0 when the call fails.
    virtual long getOperState() const;
    // Reads the working state; false when the call fails.
    virtual bool getWorkingState() const;
    // Reads the group that the conditions of this object belong to; unbound when the call fails.
    virtual FaultServiceClient getConditionGrp() const;
    // Sets the operational state, one of ENABLED..DISABLED.
    virtual void setOperState(long const& state) const;
    // Sets the working state.
    virtual void setWorkingState(bool const& working) const;
    // Reads whether any condition of the object is suppressed; false when the call fails.
    virtual bool isAnySuppressed() const;
    // Reads whether any condition of the object is active; false when the call fails.
    virtual bool isAnyActive() const;
    // Reads whether a condition is active that counts for the object; false when the call fails.
    virtual bool conditionActive() const;
    // Takes all conditions out of the object's group.
    virtual void removeAllConditions() const;
    // Reports an event of a condition to the service.
    virtual void notificationFromCondition(ConditionNotification const& notification,
                                           ConditionClient const& condition) const;
};

template <>
inline constexpr bool isSentOnly<FaultServiceClient::ConditionNotification> = true;
