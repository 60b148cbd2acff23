#include "adapter/NmiRmiInterface.h"

#include "platform/NmaLogHelper.h"
#include "rmi/TreflectHandlerState.h"

namespace {

// Whether calls can be made on `client`; says why not, at the given severity, as a message of `function`.
bool isUsable(NmiRmiAdapterClient const* client, int severity, char const* function, int line)
{
    if (client == nullptr) {
        NmaLogHelper(severity, __FILE__, function, line).message("Invalid NmiRmiAdapterClient.");
        return false;
    }
    if (!client->isConnected()) {
        NmaLogHelper(severity, __FILE__, function, line).message("NmiRmiAdapterClient is not connected.");
        return false;
    }
    return true;
}

} // namespace

NmiRmiInterface::NmiRmiInterface()
{
    TreflectHandlerState const handlerState;
    client = new NmiRmiAdapterClient(TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME, NamespaceId(1)));
    if (client != nullptr) {
        NmaLogHelper(6, __FILE__, __func__, __LINE__)
            .message("Initialized NMI RMI Adapter client [%s].", client->getOID().getIdString().c_str());
    } else {
        NmaLogHelper(4, __FILE__, __func__, __LINE__).message("Failed to get NmiRmiAdapterClient.");
    }
}

NmiRmiInterface::~NmiRmiInterface()
{
    NmaLogHelper(6, __FILE__, __func__, __LINE__).message("NmiRmiInterface destructor.");
    if (client == nullptr) {
        NmaLogHelper(4, __FILE__, __func__, __LINE__).message("Invalid NmiRmiAdapterClient.");
    }
    delete client;
}

void NmiRmiInterface::notifyPublicIpAddrChange()
{
    TreflectHandlerState const handlerState;
    if (isUsable(client, 4, __func__, __LINE__)) {
        client->notifyPublicIpAddrChangeRmi();
    }
}

std::string NmiRmiInterface::getPublicIpAddr()
{
    TreflectHandlerState const handlerState;
    return isUsable(client, 4, __func__, __LINE__) ? client->getPublicIpAddrRmi() : std::string();
}

NmiRmiAdapterClient* NmiRmiInterface::getNmiRmiAdapterClient()
{
    TreflectHandlerState const handlerState;
    return isUsable(client, 4, __func__, __LINE__) ? client : nullptr;
}

bool NmiRmiInterface::sendAlarm(NmiRmiAdapterClient::AlarmInfo const& alarm)
{
    bool wasReached = false;
    return sendAlarm(alarm, wasReached);
}

bool NmiRmiInterface::sendAlarm(NmiRmiAdapterClient::AlarmInfo const& alarm, bool& wasReached)
{
    TreflectHandlerState const handlerState;
    wasReached = isUsable(client, 6, __func__, __LINE__);
    return wasReached && client->sendAlarmRmi(alarm);
}

bool NmiRmiInterface::isConnected() const
{
    TreflectHandlerState const handlerState;
    return client != nullptr && client->isConnected();
}
