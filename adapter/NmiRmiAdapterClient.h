// NmiRmiAdapterClient: the network management agent's adapter object, well known as NMI_RMI_ADAPTER_SER_NAME.
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"

#include <string>

// Announces changes of the unit's public address, tells the address, and takes the certificate manager's alarms.
class NmiRmiAdapterClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    NmiRmiAdapterClient() = default;
    explicit NmiRmiAdapterClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<NmiRmiAdapterClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The identifier of the agent's object.
    static std::string const NMI_RMI_ADAPTER_SER_NAME;

    // The kind of an alarm; the agent decides what the values mean.
    enum AlarmType : int {
        ALARM_TYPE_0 = 0,
        ALARM_TYPE_1 = 1,
    };
    // The state of an alarm; the agent decides what the values mean.
    enum AlarmState : int {
        ALARM_STATE_0 = 0,
        ALARM_STATE_1 = 1,
        ALARM_STATE_2 = 2,
    };
    struct AlarmInfo {
        AlarmType type;
        AlarmState state;
    };

    // Executed by the agent when the public address changed; observed by those who follow it.
    virtual void notifyPublicIpAddrChangeRmi() const;
    // Reads the public address in dotted form; empty when there is none or the call fails.
    virtual std::string getPublicIpAddrRmi() const;
    // Sends an alarm. The agent's answer; false when the call fails.
    virtual bool sendAlarmRmi(AlarmInfo const& alarm) const;
};

template <>
struct RecordFields<NmiRmiAdapterClient::AlarmInfo>
    : Fields<&NmiRmiAdapterClient::AlarmInfo::type, &NmiRmiAdapterClient::AlarmInfo::state> {};

template <>
struct Operations<NmiRmiAdapterClient>
    : OperationList<NmiRmiAdapterClient, 0x411f174a, Operation<0, &NmiRmiAdapterClient::notifyPublicIpAddrChangeRmi>,
                    Operation<1, &NmiRmiAdapterClient::getPublicIpAddrRmi>,
                    Operation<2, &NmiRmiAdapterClient::sendAlarmRmi>> {};
