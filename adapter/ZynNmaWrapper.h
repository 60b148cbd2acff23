// ZynNmaWrapper: what the site management adapter uses of the network management agent.
#pragma once

#include "adapter/NmiRmiInterface.h"
#include "adapter/TreflectNotificator.h"

#include <atomic>
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

    // Why sendAlarm() returned false.
    enum class AlarmFailure {
        none,
        invalid,      // a field was, and nothing was sent
        notConnected, // the agent could not be reached, and nothing was sent
        notAccepted,  // the agent said so, or its answer did not come
    };
    // How many alarms were not accepted since construction, and why the last of them; from any thread.
    unsigned long failedAlarms() const { return failureCount; }
    AlarmFailure lastAlarmFailure() const { return lastFailure; }
    // Whether the agent was reached in the constructor and tells of changes of the address.
    bool followsAddress() const { return isFollowing; }
    // Whether the agent can be reached now, which is asked of it.
    bool isAgentConnected() const { return nmiRmiInterface.isConnected(); }

private:
    bool failAlarm(AlarmFailure why);

    TreflectNotificator<ZynNmaWrapper> notificator;
    NmiRmiInterface nmiRmiInterface;
    bool isFollowing = false;
    std::atomic<unsigned long> failureCount = 0;
    std::atomic<AlarmFailure> lastFailure = AlarmFailure::none;
};
