#include "clients/ip/EthIfNetClient.h"

#include "rmi/Call.h"

EthIfNetClient::ClientSpecificMetaObject EthIfNetClient::oMeta;
TreflectMetaObject* EthIfNetClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<SetClient> EthIfNetClient::resetIpAddrSequence() const
{
    return call<&EthIfNetClient::resetIpAddrSequence>(*this);
}
ResponseInfo<SetClient> EthIfNetClient::setShapedBandwidth(long const& bandwidth) const
{
    return call<&EthIfNetClient::setShapedBandwidth>(*this, bandwidth);
}
ResponseInfo<GetClient> EthIfNetClient::getShapedBandwidth(long& bandwidth) const
{
    return call<&EthIfNetClient::getShapedBandwidth>(*this, bandwidth);
}
ResponseInfo<GetClient> EthIfNetClient::getUpperLayerShaping(bool& shaping) const
{
    return call<&EthIfNetClient::getUpperLayerShaping>(*this, shaping);
}
ResponseInfo<SetClient> EthIfNetClient::setUpperLayerShaping(bool const& shaping) const
{
    return call<&EthIfNetClient::setUpperLayerShaping>(*this, shaping);
}
ResponseInfo<GetClient> EthIfNetClient::getEthernetAddress(TipprmiArray<short, 6>& address) const
{
    return call<&EthIfNetClient::getEthernetAddress>(*this, address);
}
ResponseInfo<SetClient> EthIfNetClient::setLmpRestriction(bool const& restricted) const
{
    return call<&EthIfNetClient::setLmpRestriction>(*this, restricted);
}
ResponseInfo<GetClient> EthIfNetClient::getLmpRestriction(bool& restricted) const
{
    return call<&EthIfNetClient::getLmpRestriction>(*this, restricted);
}
ResponseInfo<RunClient> EthIfNetClient::createProxyArp(TipprmiArray<short, 4> const& address) const
{
    return call<&EthIfNetClient::createProxyArp>(*this, address);
}
ResponseInfo<RunClient> EthIfNetClient::deleteProxyArp(TipprmiArray<short, 4> const& address) const
{
    return call<&EthIfNetClient::deleteProxyArp>(*this, address);
}
ResponseInfo<RunClient> EthIfNetClient::createVlan(VlanIfNetClient::VlanIfNetCreateParams const& params,
                                                   VlanIfNetClient& vlan) const
{
    return call<&EthIfNetClient::createVlan>(*this, params, vlan);
}
ResponseInfo<RunClient> EthIfNetClient::deleteVlan(unsigned short const& vlanId) const
{
    return call<&EthIfNetClient::deleteVlan>(*this, vlanId);
}
ResponseInfo<RunClient> EthIfNetClient::getVlanIfNet(unsigned short const& vlanId, VlanIfNetClient& vlan) const
{
    return call<&EthIfNetClient::getVlanIfNet>(*this, vlanId, vlan);
}
ResponseInfo<GetClient> EthIfNetClient::getVlanEnabled(bool& enabled) const
{
    return call<&EthIfNetClient::getVlanEnabled>(*this, enabled);
}
ResponseInfo<SetClient> EthIfNetClient::setVlanEnabled(bool const& enabled) const
{
    return call<&EthIfNetClient::setVlanEnabled>(*this, enabled);
}
ResponseInfo<SetClient> EthIfNetClient::setVlanId(unsigned short const& vlanId) const
{
    return call<&EthIfNetClient::setVlanId>(*this, vlanId);
}
ResponseInfo<GetClient> EthIfNetClient::getVlanId(unsigned short& vlanId) const
{
    return call<&EthIfNetClient::getVlanId>(*this, vlanId);
}
ResponseInfo<SetClient> EthIfNetClient::recordDeviceParams(unsigned long const& param1,
                                                           unsigned long const& param2) const
{
    return call<&EthIfNetClient::recordDeviceParams>(*this, param1, param2);
}
TipprmiSequence<EthLinkClient> EthIfNetClient::getLinks() const { return call<&EthIfNetClient::getLinks>(*this); }
void EthIfNetClient::setLinks(TipprmiSequence<EthLinkClient> const& links) const
{
    call<&EthIfNetClient::setLinks>(*this, links);
}
EthLinkClient EthIfNetClient::getActiveLink() const { return call<&EthIfNetClient::getActiveLink>(*this); }
void EthIfNetClient::setActiveLink(EthLinkClient const& link) const
{
    call<&EthIfNetClient::setActiveLink>(*this, link);
}
TipprmiSequence<unsigned short> EthIfNetClient::getVlanTags() const
{
    return call<&EthIfNetClient::getVlanTags>(*this);
}
void EthIfNetClient::setVlanTags(TipprmiSequence<unsigned short> const& tags) const
{
    call<&EthIfNetClient::setVlanTags>(*this, tags);
}
VlanIfNetFabricClient EthIfNetClient::getVlanIfNetFabric() const
{
    return call<&EthIfNetClient::getVlanIfNetFabric>(*this);
}
ResponseInfo<GetClient> EthIfNetClient::getIfNetBfdIpIub(IfNetBfdIpIubClient& bfd) const
{
    return call<&EthIfNetClient::getIfNetBfdIpIub>(*this, bfd);
}
ResponseInfo<SetClient> EthIfNetClient::setTrsIpChangeForBfd() const
{
    return call<&EthIfNetClient::setTrsIpChangeForBfd>(*this);
}
ResponseInfo<SetClient> EthIfNetClient::setSbs(unsigned long const& sbs) const
{
    return call<&EthIfNetClient::setSbs>(*this, sbs);
}
ResponseInfo<GetClient> EthIfNetClient::getSbs(unsigned long& sbs) const
{
    return call<&EthIfNetClient::getSbs>(*this, sbs);
}
ResponseInfo<SetClient> EthIfNetClient::setSbsTotal(unsigned long const& sbsTotal) const
{
    return call<&EthIfNetClient::setSbsTotal>(*this, sbsTotal);
}
ResponseInfo<GetClient> EthIfNetClient::getSbstotal(unsigned long& sbsTotal) const
{
    return call<&EthIfNetClient::getSbstotal>(*this, sbsTotal);
}
ResponseInfo<SetClient> EthIfNetClient::setSir(unsigned long const& sir) const
{
    return call<&EthIfNetClient::setSir>(*this, sir);
}
ResponseInfo<GetClient> EthIfNetClient::getSir(unsigned long& sir) const
{
    return call<&EthIfNetClient::getSir>(*this, sir);
}
ResponseInfo<SetClient> EthIfNetClient::setSirTotal(unsigned long const& sirTotal) const
{
    return call<&EthIfNetClient::setSirTotal>(*this, sirTotal);
}
ResponseInfo<GetClient> EthIfNetClient::getSirTotal(unsigned long& sirTotal) const
{
    return call<&EthIfNetClient::getSirTotal>(*this, sirTotal);
}
ResponseInfo<SetClient> EthIfNetClient::setCir(unsigned long const& cir) const
{
    return call<&EthIfNetClient::setCir>(*this, cir);
}
ResponseInfo<GetClient> EthIfNetClient::getCir(unsigned long& cir) const
{
    return call<&EthIfNetClient::getCir>(*this, cir);
}
ResponseInfo<SetClient> EthIfNetClient::setTrafficPathShapingEnable(TrafficPathShaping const& shaping) const
{
    return call<&EthIfNetClient::setTrafficPathShapingEnable>(*this, shaping);
}
ResponseInfo<GetClient> EthIfNetClient::getTrafficPathShapingEnable(TrafficPathShaping& shaping) const
{
    return call<&EthIfNetClient::getTrafficPathShapingEnable>(*this, shaping);
}
ResponseInfo<SetClient> EthIfNetClient::setQosEnable(bool const& enabled) const
{
    return call<&EthIfNetClient::setQosEnable>(*this, enabled);
}
ResponseInfo<GetClient> EthIfNetClient::getQosEnable(bool& enabled) const
{
    return call<&EthIfNetClient::getQosEnable>(*this, enabled);
}
