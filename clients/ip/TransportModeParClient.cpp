#include "clients/ip/TransportModeParClient.h"

#include "rmi/Call.h"

TransportModeParClient::ClientSpecificMetaObject TransportModeParClient::oMeta;
TreflectMetaObject* TransportModeParClient::staticMeta() { return oMeta.completed(); }

std::string const TransportModeParClient::TRANSPORT_MODE_PAR_OID = "TransportModePar";

ResponseInfo<GetClient> TransportModeParClient::getMinUdpPort(unsigned long& port) const
{
    return call<&TransportModeParClient::getMinUdpPort>(*this, port);
}
ResponseInfo<SetClient> TransportModeParClient::setMinUdpPort(unsigned long const& port) const
{
    return call<&TransportModeParClient::setMinUdpPort>(*this, port);
}
ResponseInfo<GetClient> TransportModeParClient::getMinSctpPort(unsigned long& port) const
{
    return call<&TransportModeParClient::getMinSctpPort>(*this, port);
}
ResponseInfo<SetClient> TransportModeParClient::setMinSctpPort(unsigned long const& port) const
{
    return call<&TransportModeParClient::setMinSctpPort>(*this, port);
}
ResponseInfo<GetClient> TransportModeParClient::getCacCommittedBitRate(unsigned long& rate) const
{
    return call<&TransportModeParClient::getCacCommittedBitRate>(*this, rate);
}
ResponseInfo<SetClient> TransportModeParClient::setCacCommittedBitRate(unsigned long const& rate) const
{
    return call<&TransportModeParClient::setCacCommittedBitRate>(*this, rate);
}
ResponseInfo<GetClient> TransportModeParClient::getSharedIpAllocation(unsigned long& allocation) const
{
    return call<&TransportModeParClient::getSharedIpAllocation>(*this, allocation);
}
ResponseInfo<SetClient> TransportModeParClient::setSharedIpAllocation(unsigned long const& allocation) const
{
    return call<&TransportModeParClient::setSharedIpAllocation>(*this, allocation);
}
ResponseInfo<GetClient> TransportModeParClient::getReleaseTimerForSharedIPallocation(unsigned long& timer) const
{
    return call<&TransportModeParClient::getReleaseTimerForSharedIPallocation>(*this, timer);
}
ResponseInfo<SetClient> TransportModeParClient::setReleaseTimerForSharedIPallocation(unsigned long const& timer) const
{
    return call<&TransportModeParClient::setReleaseTimerForSharedIPallocation>(*this, timer);
}
ResponseInfo<GetClient> TransportModeParClient::getDcnCommittedBitRate(unsigned long& rate) const
{
    return call<&TransportModeParClient::getDcnCommittedBitRate>(*this, rate);
}
ResponseInfo<SetClient> TransportModeParClient::setDcnCommittedBitRate(unsigned long const& rate) const
{
    return call<&TransportModeParClient::setDcnCommittedBitRate>(*this, rate);
}
ResponseInfo<GetClient> TransportModeParClient::getSignallingCommittedBitRate(unsigned long& rate) const
{
    return call<&TransportModeParClient::getSignallingCommittedBitRate>(*this, rate);
}
ResponseInfo<SetClient> TransportModeParClient::setSignallingCommittedBitRate(unsigned long const& rate) const
{
    return call<&TransportModeParClient::setSignallingCommittedBitRate>(*this, rate);
}
ResponseInfo<GetClient> TransportModeParClient::getExternalNatIpAddress(TipprmiArray<short, 4>& address) const
{
    return call<&TransportModeParClient::getExternalNatIpAddress>(*this, address);
}
ResponseInfo<SetClient> TransportModeParClient::setExternalNatIpAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&TransportModeParClient::setExternalNatIpAddress>(*this, address);
}
ResponseInfo<GetClient> TransportModeParClient::getFarEndSctpIpAddress(TipprmiArray<short, 4>& address) const
{
    return call<&TransportModeParClient::getFarEndSctpIpAddress>(*this, address);
}
ResponseInfo<SetClient> TransportModeParClient::setFarEndSctpIpAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&TransportModeParClient::setFarEndSctpIpAddress>(*this, address);
}
ResponseInfo<GetClient> TransportModeParClient::getFarEndSctpSubnetMask(TipprmiArray<short, 4>& mask) const
{
    return call<&TransportModeParClient::getFarEndSctpSubnetMask>(*this, mask);
}
ResponseInfo<SetClient> TransportModeParClient::setFarEndSctpSubnetMask(TipprmiArray<short, 4> const& mask) const
{
    return call<&TransportModeParClient::setFarEndSctpSubnetMask>(*this, mask);
}
ResponseInfo<GetClient> TransportModeParClient::getCurrentSctpIpAddress(TipprmiArray<short, 4>& address) const
{
    return call<&TransportModeParClient::getCurrentSctpIpAddress>(*this, address);
}
ResponseInfo<SetClient> TransportModeParClient::setCurrentSctpIpAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&TransportModeParClient::setCurrentSctpIpAddress>(*this, address);
}
ResponseInfo<GetClient> TransportModeParClient::getSctpSrcIpAddress(TipprmiArray<short, 4>& address) const
{
    return call<&TransportModeParClient::getSctpSrcIpAddress>(*this, address);
}
ResponseInfo<SetClient> TransportModeParClient::setSctpSrcIpAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&TransportModeParClient::setSctpSrcIpAddress>(*this, address);
}
