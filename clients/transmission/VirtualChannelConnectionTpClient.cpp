#include "clients/transmission/VirtualChannelConnectionTpClient.h"

#include "clients/transmission/AtmVcCrossConnectionClient.h"
#include "clients/transmission/VirtualChannelTrailTpClient.h"
#include "rmi/Call.h"

VirtualChannelConnectionTpClient::ClientSpecificMetaObject VirtualChannelConnectionTpClient::oMeta;
TreflectMetaObject* VirtualChannelConnectionTpClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<RunClient> VirtualChannelConnectionTpClient::getVpiVci(long& vpi, long& vci) const
{
    return call<&VirtualChannelConnectionTpClient::getVpiVci>(*this, vpi, vci);
}
ResponseInfo<RunClient> VirtualChannelConnectionTpClient::getLowLevelVpiVci(long& vpi, long& vci) const
{
    return call<&VirtualChannelConnectionTpClient::getLowLevelVpiVci>(*this, vpi, vci);
}
long VirtualChannelConnectionTpClient::getBackplaneConnectionHandle() const
{
    return call<&VirtualChannelConnectionTpClient::getBackplaneConnectionHandle>(*this);
}
bool VirtualChannelConnectionTpClient::getEgressFrameDiscardEnabled() const
{
    return call<&VirtualChannelConnectionTpClient::getEgressFrameDiscardEnabled>(*this);
}
bool VirtualChannelConnectionTpClient::getIngressFrameDiscardEnabled() const
{
    return call<&VirtualChannelConnectionTpClient::getIngressFrameDiscardEnabled>(*this);
}
bool VirtualChannelConnectionTpClient::setEgressFrameDiscardEnabled(bool const& enabled) const
{
    return call<&VirtualChannelConnectionTpClient::setEgressFrameDiscardEnabled>(*this, enabled);
}
bool VirtualChannelConnectionTpClient::setIngressFrameDiscardEnabled(bool const& enabled) const
{
    return call<&VirtualChannelConnectionTpClient::setIngressFrameDiscardEnabled>(*this, enabled);
}
ResponseInfo<GetClient>
VirtualChannelConnectionTpClient::getCrossConnection(AtmVcCrossConnectionClient& crossConnection) const
{
    return call<&VirtualChannelConnectionTpClient::getCrossConnection>(*this, crossConnection);
}
ResponseInfo<GetClient> VirtualChannelConnectionTpClient::getAssociatedTp(VirtualChannelConnectionTpClient& tp) const
{
    return call<&VirtualChannelConnectionTpClient::getAssociatedTp>(*this, tp);
}
ResponseInfo<GetClient> VirtualChannelConnectionTpClient::getChannelTrail(VirtualChannelTrailTpClient& trail) const
{
    return call<&VirtualChannelConnectionTpClient::getChannelTrail>(*this, trail);
}
bool VirtualChannelConnectionTpClient::getFaultPropagation() const
{
    return call<&VirtualChannelConnectionTpClient::getFaultPropagation>(*this);
}
ResponseInfo<RunClient>
VirtualChannelConnectionTpClient::internalSetCrossConnection(AtmVcCrossConnectionClient const& crossConnection) const
{
    return call<&VirtualChannelConnectionTpClient::internalSetCrossConnection>(*this, crossConnection);
}
ResponseInfo<RunClient> VirtualChannelConnectionTpClient::internalResetCrossConnection() const
{
    return call<&VirtualChannelConnectionTpClient::internalResetCrossConnection>(*this);
}
ResponseInfo<RunClient>
VirtualChannelConnectionTpClient::internalConnectChannelTrail(VirtualChannelTrailTpClient const& trail) const
{
    return call<&VirtualChannelConnectionTpClient::internalConnectChannelTrail>(*this, trail);
}
ResponseInfo<RunClient>
VirtualChannelConnectionTpClient::internalDisconnectChannelTrail(VirtualChannelTrailTpClient const& trail) const
{
    return call<&VirtualChannelConnectionTpClient::internalDisconnectChannelTrail>(*this, trail);
}
ResponseInfo<RunClient> VirtualChannelConnectionTpClient::internalSetFaultPropagation(bool const& propagate) const
{
    return call<&VirtualChannelConnectionTpClient::internalSetFaultPropagation>(*this, propagate);
}
ResponseInfo<SetClient> VirtualChannelConnectionTpClient::refreshPmStatus() const
{
    return call<&VirtualChannelConnectionTpClient::refreshPmStatus>(*this);
}
ResponseInfo<SetClient> VirtualChannelConnectionTpClient::updateVcBundleBandwidth(bool const& flag) const
{
    return call<&VirtualChannelConnectionTpClient::updateVcBundleBandwidth>(*this, flag);
}
