#include "clients/transmission/VirtualChannelTrailTpClient.h"

#include "rmi/Call.h"

VirtualChannelTrailTpClient::ClientSpecificMetaObject VirtualChannelTrailTpClient::oMeta;
TreflectMetaObject* VirtualChannelTrailTpClient::staticMeta() { return oMeta.completed(); }

VirtualChannelConnectionTpClient VirtualChannelTrailTpClient::getAssociatedVccTp() const
{
    return call<&VirtualChannelTrailTpClient::getAssociatedVccTp>(*this);
}
bool VirtualChannelTrailTpClient::init(VirtualChannelConnectionTpClient const& vccTp, long const& value) const
{
    return call<&VirtualChannelTrailTpClient::init>(*this, vccTp, value);
}
ResponseInfo<SetClient> VirtualChannelTrailTpClient::setInUse() const
{
    return call<&VirtualChannelTrailTpClient::setInUse>(*this);
}
ResponseInfo<SetClient> VirtualChannelTrailTpClient::setOutOfUse() const
{
    return call<&VirtualChannelTrailTpClient::setOutOfUse>(*this);
}
ResponseInfo<GetClient> VirtualChannelTrailTpClient::isInUse() const
{
    return call<&VirtualChannelTrailTpClient::isInUse>(*this);
}
ResponseInfo<SetClient> VirtualChannelTrailTpClient::setVif(unsigned long const& vif) const
{
    return call<&VirtualChannelTrailTpClient::setVif>(*this, vif);
}
ResponseInfo<GetClient> VirtualChannelTrailTpClient::getVif(unsigned long& vif) const
{
    return call<&VirtualChannelTrailTpClient::getVif>(*this, vif);
}
ResponseInfo<RunClient> VirtualChannelTrailTpClient::raiseAisAlarm() const
{
    return call<&VirtualChannelTrailTpClient::raiseAisAlarm>(*this);
}
ResponseInfo<RunClient> VirtualChannelTrailTpClient::raiseRdiAlarm() const
{
    return call<&VirtualChannelTrailTpClient::raiseRdiAlarm>(*this);
}
ResponseInfo<RunClient> VirtualChannelTrailTpClient::raiseCancelAlarm() const
{
    return call<&VirtualChannelTrailTpClient::raiseCancelAlarm>(*this);
}
