#include "adapter/NmiRmiAdapterClient.h"

#include "rmi/Call.h"

NmiRmiAdapterClient::ClientSpecificMetaObject NmiRmiAdapterClient::oMeta;
TreflectMetaObject* NmiRmiAdapterClient::staticMeta() { return oMeta.completed(); }

std::string const NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME = "NmiRmiAdapterServer";

void NmiRmiAdapterClient::notifyPublicIpAddrChangeRmi() const
{
    call<&NmiRmiAdapterClient::notifyPublicIpAddrChangeRmi>(*this);
}
std::string NmiRmiAdapterClient::getPublicIpAddrRmi() const
{
    return call<&NmiRmiAdapterClient::getPublicIpAddrRmi>(*this);
}
bool NmiRmiAdapterClient::sendAlarmRmi(AlarmInfo const& alarm) const
{
    return call<&NmiRmiAdapterClient::sendAlarmRmi>(*this, alarm);
}
