#include "clients/transmission/AtmIfNetClient.h"

#include "rmi/Call.h"

AtmIfNetClient::ClientSpecificMetaObject AtmIfNetClient::oMeta;
TreflectMetaObject* AtmIfNetClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> AtmIfNetClient::getLlcSnap(bool& llcSnap) const
{
    return call<&AtmIfNetClient::getLlcSnap>(*this, llcSnap);
}
ResponseInfo<SetClient> AtmIfNetClient::setLlcSnap(bool const& llcSnap) const
{
    return call<&AtmIfNetClient::setLlcSnap>(*this, llcSnap);
}
Aal5VirtualChannelTrailTpClient AtmIfNetClient::getVcTtp() const { return call<&AtmIfNetClient::getVcTtp>(*this); }
unsigned long AtmIfNetClient::getDestIp() const { return call<&AtmIfNetClient::getDestIp>(*this); }
bool AtmIfNetClient::getAtmarpStatus() const { return call<&AtmIfNetClient::getAtmarpStatus>(*this); }
ResponseInfo<SetClient> AtmIfNetClient::recordDeviceParams(unsigned short const& value1, std::string const& text,
                                                           short const& value2) const
{
    return call<&AtmIfNetClient::recordDeviceParams>(*this, value1, text, value2);
}
