// ZynNmaWrapper: what the site management adapter uses of the network management agent.
#pragma once

#include "adapter/NmiRmiInterface.h"
#include "adapter/TreflectNotificator.h"

#include <string>

// Follows the unit's public address into the platform's user environment, from construction on, and sends the
// certificate manager's alarms. The agent is looked for once, in the constructor. Alarms may be sent from any thread.
class ZynNmaWrapper {
public:
    // An alarm as the certificate manager has it.
    struct CertMgrAlarmInfo {
        int type;  // 0 or 1
        int state; // 0, 1 or 2
    };

    ZynNmaWrapper();
    ZynNmaWrapper(ZynNmaWrapper const&) = delete;
    ZynNmaWrapper& operator=(ZynNmaWrapper const&) = delete;
    ~ZynNmaWrapper();

    // The agent announced a change: asks for the present address and applies it. Always true.
    bool publicIpAddrChangeDetected(TreflectObserver& observer);
    // Applies a public address in dotted form; an empty one changes nothing.
    void setPublicIpAddr(std::string const& address);
    // Sends an alarm. The agent's answer; false for an alarm with an invalid field, which is not sent.
    bool sendAlarm(CertMgrAlarmInfo const& alarm);
    // Translates an alarm. Whether both fields were valid; an invalid one is left as it was in `to`.
    bool zynToNmaAlarmInfo(CertMgrAlarmInfo const& from, NmiRmiAdapterClient::AlarmInfo& to);

private:
    TreflectNotificator<ZynNmaWrapper> notificator;
    NmiRmiInterface nmiRmiInterface;
};
