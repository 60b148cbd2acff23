#include "clients/transmission/Aal5VirtualChannelTrailTpClient.h"

#include "rmi/Call.h"

Aal5VirtualChannelTrailTpClient::ClientSpecificMetaObject Aal5VirtualChannelTrailTpClient::oMeta;
TreflectMetaObject* Aal5VirtualChannelTrailTpClient::staticMeta() { return oMeta.completed(); }

Aal5ProfileClient Aal5VirtualChannelTrailTpClient::getAssociatedAalProfile() const
{
    return call<&Aal5VirtualChannelTrailTpClient::getAssociatedAalProfile>(*this);
}
bool Aal5VirtualChannelTrailTpClient::init(InitValues const& values) const
{
    return call<&Aal5VirtualChannelTrailTpClient::init>(*this, values);
}
ResponseInfo<SetClient> Aal5VirtualChannelTrailTpClient::enablePmForAAL() const
{
    return call<&Aal5VirtualChannelTrailTpClient::enablePmForAAL>(*this);
}
ResponseInfo<SetClient> Aal5VirtualChannelTrailTpClient::disablePmForAAL() const
{
    return call<&Aal5VirtualChannelTrailTpClient::disablePmForAAL>(*this);
}
ResponseInfo<GetClient> Aal5VirtualChannelTrailTpClient::getPmStatusForAAL() const
{
    return call<&Aal5VirtualChannelTrailTpClient::getPmStatusForAAL>(*this);
}
Aal5PmClient Aal5VirtualChannelTrailTpClient::getAal5Pm() const
{
    return call<&Aal5VirtualChannelTrailTpClient::getAal5Pm>(*this);
}
