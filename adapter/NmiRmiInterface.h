// NmiRmiInterface: the link to the network management agent.
#pragma once

#include "adapter/NmiRmiAdapterClient.h"

#include <string>

// Owns one proxy of the agent's object and checks it before every call. The proxy is made once, here, and never again:
// when it could not be made, every operation logs that and returns its default. May be used from any thread.
class NmiRmiInterface {
public:
    NmiRmiInterface();
    NmiRmiInterface(NmiRmiInterface const&) = delete;
    NmiRmiInterface& operator=(NmiRmiInterface const&) = delete;
    virtual ~NmiRmiInterface();

    // Makes the agent announce a change of the public address.
    void notifyPublicIpAddrChange();
    // Reads the public address; empty when the agent has none or cannot be reached.
    std::string getPublicIpAddr();
    // The proxy, while the agent can be reached; else null.
    NmiRmiAdapterClient* getNmiRmiAdapterClient();
    // Sends an alarm. The agent's answer; false when it cannot be reached.
    bool sendAlarm(NmiRmiAdapterClient::AlarmInfo const& alarm);
    // The same; `wasReached` tells whether the agent could be reached, so that it was sent.
    bool sendAlarm(NmiRmiAdapterClient::AlarmInfo const& alarm, bool& wasReached);
    // Whether the agent can be reached. Logs nothing.
    bool isConnected() const;

private:
    NmiRmiAdapterClient* client = nullptr;
};
