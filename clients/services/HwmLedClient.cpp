#include "clients/services/HwmLedClient.h"

#include "rmi/Call.h"

HwmLedClient::ClientSpecificMetaObject HwmLedClient::oMeta;
TreflectMetaObject* HwmLedClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> HwmLedClient::getLedState(LedState& state) const
{
    return call<&HwmLedClient::getLedState>(*this, state);
}
ResponseInfo<SetClient> HwmLedClient::updateLedState(LedState const& state) const
{
    return call<&HwmLedClient::updateLedState>(*this, state);
}
ResponseInfo<SetClient> HwmLedClient::setLedName(std::string const& name) const
{
    return call<&HwmLedClient::setLedName>(*this, name);
}
ResponseInfo<GetClient> HwmLedClient::getLedName(std::string& name) const
{
    return call<&HwmLedClient::getLedName>(*this, name);
}
