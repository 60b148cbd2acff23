#include "clients/ip/IpNodeClient.h"

#include "rmi/Call.h"

IpNodeClient::ClientSpecificMetaObject IpNodeClient::oMeta;
TreflectMetaObject* IpNodeClient::staticMeta() { return oMeta.completed(); }

std::string const IpNodeClient::BTS_DESCR = "BTS";
std::string const IpNodeClient::QUBO_DESCR = "QUBO";
std::string const IpNodeClient::RNC_DESCR = "RNC";
std::string const IpNodeClient::RET1_DESCR = "RET1";
std::string const IpNodeClient::TAVI_DESCR = "Lorbus";
std::string const IpNodeClient::TRS_DESCR = "TRS";
std::string const IpNodeClient::BFD_DESCR = "BFD";
std::string const IpNodeClient::ICMP_DESCR = "ICMP";
std::string const IpNodeClient::DEDICATED_OMS_DESCR = "DedicatedOMS";
std::string const IpNodeClient::BTS_IP_PRIM_DESCR = "btsSubnetIpPrimary";
std::string const IpNodeClient::BTS_IP_SEC_DESCR = "btsSubnetIpSecondary";
std::string const IpNodeClient::ASNGW1_DESCR = "asnGwIpAddrPrimary";
std::string const IpNodeClient::ASNGW2_DESCR = "asnGwIpAddrSecondary";
std::string const IpNodeClient::OMS_DESCR = "OMS";
std::string const IpNodeClient::BASEBAND_DESCR = "Baseband";
std::string const IpNodeClient::VOK_DESCR = "VOK";
std::string const IpNodeClient::BSFUNC_1_DESCR = "BS_FUNC1";
std::string const IpNodeClient::BSFUNC_2_DESCR = "BS_FUNC2";
std::string const IpNodeClient::BSFUNC_3_DESCR = "BS_FUNC3";
std::string const IpNodeClient::BSFUNC_4_DESCR = "BS_FUNC4";
std::string const IpNodeClient::BSFUNC_5_DESCR = "BS_FUNC5";
std::string const IpNodeClient::BSFUNC_6_DESCR = "BS_FUNC6";
std::string const IpNodeClient::BTS_PRIMARY_DESCR = "btsIpPrimary";
std::string const IpNodeClient::IPNODE_OID = "IpNode";
std::string const IpNodeClient::ATMPHYSIFNAME = "atmphys0";
std::string const IpNodeClient::BTS_ID = "BTS";
std::string const IpNodeClient::QUBO_ID = "QUBO";
std::string const IpNodeClient::RNC_ID = "RNC";
std::string const IpNodeClient::RET1_ID = "RET1";
std::string const IpNodeClient::TAVI_ID = "Lorbus";
std::string const IpNodeClient::TRS_ID = "TRS";
std::string const IpNodeClient::BFD_ID = "BFD";
std::string const IpNodeClient::ICMP_ID = "ICMP";
std::string const IpNodeClient::DEDICATED_OMS_ID = "DedicatedOMS";
std::string const IpNodeClient::BTS_IP_PRIM_ID = "btsSubnetIpPrimary";
std::string const IpNodeClient::ASNGW1_ID = "asnGwIpAddrPrimary";
std::string const IpNodeClient::ASNGW2_ID = "asnGwIpAddrSecondary";
std::string const IpNodeClient::OMS_ID = "OMS";
std::string const IpNodeClient::BASEBAND_ID = "Baseband";
std::string const IpNodeClient::VOK_ID = "VOK";
std::string const IpNodeClient::BSFUNC_1_ID = "BS_FUNC1";
std::string const IpNodeClient::BSFUNC_2_ID = "BS_FUNC2";
std::string const IpNodeClient::BSFUNC_3_ID = "BS_FUNC3";
std::string const IpNodeClient::BSFUNC_4_ID = "BS_FUNC4";
std::string const IpNodeClient::BSFUNC_5_ID = "BS_FUNC5";
std::string const IpNodeClient::BSFUNC_6_ID = "BS_FUNC6";
std::string const IpNodeClient::BTS_PRIMARY_ID = "btsIpPrimary";

ResponseInfo<GetClient> IpNodeClient::getTransportMode(long& mode) const
{
    return call<&IpNodeClient::getTransportMode>(*this, mode);
}
ResponseInfo<SetClient> IpNodeClient::setTransportMode(long const& mode) const
{
    return call<&IpNodeClient::setTransportMode>(*this, mode);
}
ResponseInfo<SetClient> IpNodeClient::finalize() const { return call<&IpNodeClient::finalize>(*this); }
ResponseInfo<GetClient> IpNodeClient::getOmsTlsMode(long& mode) const
{
    return call<&IpNodeClient::getOmsTlsMode>(*this, mode);
}
ResponseInfo<SetClient> IpNodeClient::setOmsTlsMode(long const& mode) const
{
    return call<&IpNodeClient::setOmsTlsMode>(*this, mode);
}
ResponseInfo<GetClient> IpNodeClient::getRmAccess(RmAccessClient& access) const
{
    return call<&IpNodeClient::getRmAccess>(*this, access);
}
ResponseInfo<GetClient> IpNodeClient::getNtpAccess(NtpAccessClient& access) const
{
    return call<&IpNodeClient::getNtpAccess>(*this, access);
}
ResponseInfo<GetClient> IpNodeClient::getDhcpAccess(DhcpAccessClient& access) const
{
    return call<&IpNodeClient::getDhcpAccess>(*this, access);
}
ResponseInfo<GetClient> IpNodeClient::getAtmIfNetSequence(TipprmiSequence<AtmIfNetClient>& interfaces) const
{
    return call<&IpNodeClient::getAtmIfNetSequence>(*this, interfaces);
}
ResponseInfo<GetClient> IpNodeClient::getAtmIfNet(std::string const& name, AtmIfNetClient& ifNet) const
{
    return call<&IpNodeClient::getAtmIfNet>(*this, name, ifNet);
}
ResponseInfo<GetClient> IpNodeClient::getLMPIfNet(EthIfNetClient& ifNet) const
{
    return call<&IpNodeClient::getLMPIfNet>(*this, ifNet);
}
ResponseInfo<GetClient> IpNodeClient::getTransportIfNet(EthIfNetClient& ifNet) const
{
    return call<&IpNodeClient::getTransportIfNet>(*this, ifNet);
}
ResponseInfo<GetClient> IpNodeClient::getIp3IfNetSequence(TipprmiSequence<Ip3IfNetClient>& interfaces) const
{
    return call<&IpNodeClient::getIp3IfNetSequence>(*this, interfaces);
}
ResponseInfo<GetClient> IpNodeClient::getTransportModePar(TransportModeParClient& parameters) const
{
    return call<&IpNodeClient::getTransportModePar>(*this, parameters);
}
ResponseInfo<GetClient> IpNodeClient::getDedicatedIpRoutingTable(IpRoutingTableClient& table, long const& number) const
{
    return call<&IpNodeClient::getDedicatedIpRoutingTable>(*this, table, number);
}
ResponseInfo<GetClient> IpNodeClient::getBfdIpIub(BfdIpIubClient& bfd) const
{
    return call<&IpNodeClient::getBfdIpIub>(*this, bfd);
}
ResponseInfo<GetClient> IpNodeClient::getDiffServToVlanMap(DiffServToVlanMapClient& map) const
{
    return call<&IpNodeClient::getDiffServToVlanMap>(*this, map);
}
ResponseInfo<GetClient> IpNodeClient::getIpSec(IpSecClient& ipSec) const
{
    return call<&IpNodeClient::getIpSec>(*this, ipSec);
}
ResponseInfo<SetClient> IpNodeClient::setIpConfig(std::string const& name, TipprmiArray<short, 4> const& address,
                                                  TipprmiArray<short, 4> const& address2, unsigned long const& number,
                                                  std::string const& text) const
{
    return call<&IpNodeClient::setIpConfig>(*this, name, address, address2, number, text);
}
ResponseInfo<SetClient> IpNodeClient::resetIpConfig() const { return call<&IpNodeClient::resetIpConfig>(*this); }
ResponseInfo<GetClient> IpNodeClient::getIpConfig(std::string const& name, TipprmiArray<short, 4>& address,
                                                  TipprmiArray<short, 4>& address2, unsigned long& number,
                                                  std::string& text) const
{
    return call<&IpNodeClient::getIpConfig>(*this, name, address, address2, number, text);
}
ResponseInfo<GetClient> IpNodeClient::getIfNet(long const& number, IfNetClient& ifNet) const
{
    return call<&IpNodeClient::getIfNet>(*this, number, ifNet);
}
ResponseInfo<GetClient> IpNodeClient::getIcmpResponseEnabled(bool& enabled) const
{
    return call<&IpNodeClient::getIcmpResponseEnabled>(*this, enabled);
}
ResponseInfo<SetClient> IpNodeClient::setIcmpResponseEnabled(bool const& enabled) const
{
    return call<&IpNodeClient::setIcmpResponseEnabled>(*this, enabled);
}
ResponseInfo<SetClient> IpNodeClient::setProxyArpEnableStatus(bool const& enabled) const
{
    return call<&IpNodeClient::setProxyArpEnableStatus>(*this, enabled);
}
ResponseInfo<GetClient> IpNodeClient::getProxyArpEnableStatus(bool& enabled) const
{
    return call<&IpNodeClient::getProxyArpEnableStatus>(*this, enabled);
}
ResponseInfo<SetClient> IpNodeClient::setMplaneActivated(bool const& activated) const
{
    return call<&IpNodeClient::setMplaneActivated>(*this, activated);
}
ResponseInfo<GetClient> IpNodeClient::getMplaneActivated(bool& activated) const
{
    return call<&IpNodeClient::getMplaneActivated>(*this, activated);
}
ResponseInfo<SetClient> IpNodeClient::setMplaneVirtualIpAddress(TipprmiArray<short, 4> const& address,
                                                                TipprmiArray<short, 4> const& address2) const
{
    return call<&IpNodeClient::setMplaneVirtualIpAddress>(*this, address, address2);
}
ResponseInfo<GetClient> IpNodeClient::getMplaneVirtualIpAddress(TipprmiArray<short, 4>& address,
                                                                TipprmiArray<short, 4>& address2) const
{
    return call<&IpNodeClient::getMplaneVirtualIpAddress>(*this, address, address2);
}
ResponseInfo<SetClient> IpNodeClient::setGtpuSupervisoryIpAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&IpNodeClient::setGtpuSupervisoryIpAddress>(*this, address);
}
ResponseInfo<GetClient> IpNodeClient::getGtpuSupervisoryIpAddress(TipprmiArray<short, 4>& address) const
{
    return call<&IpNodeClient::getGtpuSupervisoryIpAddress>(*this, address);
}
ResponseInfo<SetClient>
IpNodeClient::setAdjEnbIpAddressList(TipprmiSequence<TipprmiArray<short, 4>> const& addresses) const
{
    return call<&IpNodeClient::setAdjEnbIpAddressList>(*this, addresses);
}
ResponseInfo<GetClient> IpNodeClient::getAdjEnbIpAddressList(TipprmiSequence<TipprmiArray<short, 4>>& addresses) const
{
    return call<&IpNodeClient::getAdjEnbIpAddressList>(*this, addresses);
}
ResponseInfo<SetClient> IpNodeClient::setAdjEnbIpAddressSeq(TipprmiSequence<IpAddressPair> const& addresses) const
{
    return call<&IpNodeClient::setAdjEnbIpAddressSeq>(*this, addresses);
}
ResponseInfo<GetClient> IpNodeClient::getAdjEnbIpAddressSeq(TipprmiSequence<IpAddressPair>& addresses) const
{
    return call<&IpNodeClient::getAdjEnbIpAddressSeq>(*this, addresses);
}
ResponseInfo<SetClient> IpNodeClient::setSgwIpAddressSeq(TipprmiSequence<IpAddressPair> const& addresses) const
{
    return call<&IpNodeClient::setSgwIpAddressSeq>(*this, addresses);
}
ResponseInfo<GetClient> IpNodeClient::getSgwIpAddressSeq(TipprmiSequence<IpAddressPair>& addresses) const
{
    return call<&IpNodeClient::getSgwIpAddressSeq>(*this, addresses);
}
ResponseInfo<SetClient> IpNodeClient::setSgwIpAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&IpNodeClient::setSgwIpAddress>(*this, address);
}
ResponseInfo<GetClient> IpNodeClient::getSgwIpAddress(TipprmiArray<short, 4>& address) const
{
    return call<&IpNodeClient::getSgwIpAddress>(*this, address);
}
ResponseInfo<GetClient> IpNodeClient::getMtu(long& mtu) const { return call<&IpNodeClient::getMtu>(*this, mtu); }
ResponseInfo<SetClient> IpNodeClient::setMtu(long const& mtu) const { return call<&IpNodeClient::setMtu>(*this, mtu); }
ResponseInfo<GetClient> IpNodeClient::getDcnAvailable(bool& available) const
{
    return call<&IpNodeClient::getDcnAvailable>(*this, available);
}
ResponseInfo<SetClient> IpNodeClient::setDcnAvailable(bool const& available) const
{
    return call<&IpNodeClient::setDcnAvailable>(*this, available);
}
ResponseInfo<SetClient> IpNodeClient::setBtsPrimaryIpAddress(TipprmiArray<short, 4> const& address,
                                                             TipprmiArray<short, 4> const& address2) const
{
    return call<&IpNodeClient::setBtsPrimaryIpAddress>(*this, address, address2);
}
ResponseInfo<SetClient> IpNodeClient::setPrimIpAdr(TipprmiArray<short, 4> const& address,
                                                   TipprmiArray<short, 4> const& address2) const
{
    return call<&IpNodeClient::setPrimIpAdr>(*this, address, address2);
}
ResponseInfo<SetClient> IpNodeClient::setModuleId(unsigned long const& moduleId) const
{
    return call<&IpNodeClient::setModuleId>(*this, moduleId);
}
ResponseInfo<GetClient> IpNodeClient::getModuleId(unsigned long& moduleId) const
{
    return call<&IpNodeClient::getModuleId>(*this, moduleId);
}
ResponseInfo<RunClient> IpNodeClient::createAtmIfNet(AtmIfNetCreateParam const& param, AtmIfNetClient& ifNet) const
{
    return call<&IpNodeClient::createAtmIfNet>(*this, param, ifNet);
}
ResponseInfo<RunClient> IpNodeClient::deleteAtmIfNet(AtmIfNetClient const& ifNet) const
{
    return call<&IpNodeClient::deleteAtmIfNet>(*this, ifNet);
}
ResponseInfo<RunClient> IpNodeClient::configureFromBootp(AtmIfNetClient const& ifNet,
                                                         TipprmiArray<short, 4> const& address,
                                                         TipprmiArray<short, 4> const& address2) const
{
    return call<&IpNodeClient::configureFromBootp>(*this, ifNet, address, address2);
}
ResponseInfo<RunClient> IpNodeClient::createIp3IfNet(Ip3IfNetClient::Cfg const& cfg, Ip3IfNetClient& ifNet) const
{
    return call<&IpNodeClient::createIp3IfNet>(*this, cfg, ifNet);
}
ResponseInfo<RunClient> IpNodeClient::deleteIp3IfNet(Ip3IfNetClient const& ifNet) const
{
    return call<&IpNodeClient::deleteIp3IfNet>(*this, ifNet);
}
ResponseInfo<SetClient> IpNodeClient::setQuboSwSupport(QuboSwSupport const& support) const
{
    return call<&IpNodeClient::setQuboSwSupport>(*this, support);
}
ResponseInfo<GetClient> IpNodeClient::getQuboSwSupport(QuboSwSupport& support) const
{
    return call<&IpNodeClient::getQuboSwSupport>(*this, support);
}
ResponseInfo<SetClient> IpNodeClient::setQubomode(Qubomode const& mode) const
{
    return call<&IpNodeClient::setQubomode>(*this, mode);
}
ResponseInfo<GetClient> IpNodeClient::getQubomode(Qubomode& mode) const
{
    return call<&IpNodeClient::getQubomode>(*this, mode);
}
bool IpNodeClient::getnumberedLinks() const { return call<&IpNodeClient::getnumberedLinks>(*this); }
bool IpNodeClient::pingRemoteEnd(TipprmiArray<short, 4> const& address, TipprmiArray<short, 4> const& address2,
                                 long const& number) const
{
    return call<&IpNodeClient::pingRemoteEnd>(*this, address, address2, number);
}
void IpNodeClient::setPingRemoteEndResult(bool const& result) const
{
    call<&IpNodeClient::setPingRemoteEndResult>(*this, result);
}
bool IpNodeClient::isFinalizeFlagSet() const { return call<&IpNodeClient::isFinalizeFlagSet>(*this); }
VlanMapClient IpNodeClient::getVlanMap() const { return call<&IpNodeClient::getVlanMap>(*this); }
ResponseInfo<SetClient> IpNodeClient::setactEthernetSec(bool const& activated) const
{
    return call<&IpNodeClient::setactEthernetSec>(*this, activated);
}
ResponseInfo<GetClient> IpNodeClient::getactEthernetSec(bool& activated) const
{
    return call<&IpNodeClient::getactEthernetSec>(*this, activated);
}
void IpNodeClient::triggerCheckAndMarkDeferredRoutes() const
{
    call<&IpNodeClient::triggerCheckAndMarkDeferredRoutes>(*this);
}
