// IpNodeClient: the IP node, well known as IPNODE_OID: the object that everything on the unit's IP side is reached
// from.
#pragma once

#include "clients/ip/AtmIfNetCreateParam.h"
#include "clients/ip/BfdIpIubClient.h"
#include "clients/ip/DhcpAccessClient.h"
#include "clients/ip/DiffServToVlanMapClient.h"
#include "clients/ip/EthIfNetClient.h"
#include "clients/ip/IfNetClient.h"
#include "clients/ip/Ip3IfNetClient.h"
#include "clients/ip/IpAddressPair.h"
#include "clients/ip/IpRoutingTableClient.h"
#include "clients/ip/IpSecClient.h"
#include "clients/ip/NtpAccessClient.h"
#include "clients/ip/RmAccessClient.h"
#include "clients/ip/TransportModeParClient.h"
#include "clients/ip/VlanMapClient.h"
#include "clients/transmission/AtmIfNetClient.h"
#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Hands out the IP interfaces, maps, routing tables and access services, creates and deletes ATM and multilink
// interfaces, and keeps the settings of the node. Out-arguments count only when the status is OK; operations with a
// plain result return false or an unbound proxy when the call fails. Addresses and masks are arrays of octets, the
// first octet first. Not an application object.
//
// To reach it, build a TipprmiOID from IPNODE_OID in namespace 1, make a proxy from that, and ask isConnected() before
// any call; a thread of the caller's own holds a TreflectHandlerState meanwhile.
class IpNodeClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    IpNodeClient() = default;
    explicit IpNodeClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<IpNodeClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The default time to live of packets, and whether they are forwarded by default.
    static constexpr short DEFAULT_TTL = 64;
    static constexpr bool DEFAULT_IPFORWARDING = true;
    // The OMS TLS mode.
    static constexpr int OMS_TLS_MODE_OFF = 0;
    static constexpr int OMS_TLS_MODE_FORCED = 1;
    static constexpr int OMS_TLS_MODE_PROBING = 2;
    // The transport mode.
    static constexpr int TRANSPORT_MODE_UNDEFINED = 0;
    static constexpr int TRANSPORT_MODE_ATMOETH = 1;
    static constexpr int TRANSPORT_MODE_DUALIUB = 2;
    static constexpr int TRANSPORT_MODE_IUBIP = 3;

    // Descriptions of the IP configuration entries; each has the text of the name below that begins alike.
    static std::string const BTS_DESCR;
    static std::string const QUBO_DESCR;
    static std::string const RNC_DESCR;
    static std::string const RET1_DESCR;
    static std::string const TAVI_DESCR;
    static std::string const TRS_DESCR;
    static std::string const BFD_DESCR;
    static std::string const ICMP_DESCR;
    static std::string const DEDICATED_OMS_DESCR;
    static std::string const BTS_IP_PRIM_DESCR;
    static std::string const BTS_IP_SEC_DESCR; // the only one without a name
    static std::string const ASNGW1_DESCR;
    static std::string const ASNGW2_DESCR;
    static std::string const OMS_DESCR;
    static std::string const BASEBAND_DESCR;
    static std::string const VOK_DESCR;
    static std::string const BSFUNC_1_DESCR;
    static std::string const BSFUNC_2_DESCR;
    static std::string const BSFUNC_3_DESCR;
    static std::string const BSFUNC_4_DESCR;
    static std::string const BSFUNC_5_DESCR;
    static std::string const BSFUNC_6_DESCR;
    static std::string const BTS_PRIMARY_DESCR;
    // The identifier of the IP node.
    static std::string const IPNODE_OID;
    // The name of the ATM physical interface.
    static std::string const ATMPHYSIFNAME;
    // Names of the IP configuration entries, for setIpConfig() and getIpConfig(); case matters.
    static std::string const BTS_ID;
    static std::string const QUBO_ID;
    static std::string const RNC_ID;
    static std::string const RET1_ID;
    static std::string const TAVI_ID;
    static std::string const TRS_ID;
    static std::string const BFD_ID;
    static std::string const ICMP_ID;
    static std::string const DEDICATED_OMS_ID;
    static std::string const BTS_IP_PRIM_ID;
    static std::string const ASNGW1_ID;
    static std::string const ASNGW2_ID;
    static std::string const OMS_ID;
    static std::string const BASEBAND_ID;
    static std::string const VOK_ID;
    static std::string const BSFUNC_1_ID;
    static std::string const BSFUNC_2_ID;
    static std::string const BSFUNC_3_ID;
    static std::string const BSFUNC_4_ID;
    static std::string const BSFUNC_5_ID;
    static std::string const BSFUNC_6_ID;
    static std::string const BTS_PRIMARY_ID;

    // The software support for the Qubo radio architecture; the server decides what the values mean.
    enum QuboSwSupport : int {
        QUBO_SW_SUPPORT_0 = 0,
    };
    // The operating mode of Qubo; the server decides what the values mean. Spelled with a lower-case m.
    enum Qubomode : int {
        QUBOMODE_0 = 0,
    };

    // Reads the transport mode: a TRANSPORT_MODE_ constant.
    virtual ResponseInfo<GetClient> getTransportMode(long& mode) const;
    // Sets the transport mode: a TRANSPORT_MODE_ constant.
    virtual ResponseInfo<SetClient> setTransportMode(long const& mode) const;
    // Finalizes the node; isFinalizeFlagSet() tells whether that was done.
    virtual ResponseInfo<SetClient> finalize() const;
    // Reads the OMS TLS mode: an OMS_TLS_MODE_ constant.
    virtual ResponseInfo<GetClient> getOmsTlsMode(long& mode) const;
    // Sets the OMS TLS mode: an OMS_TLS_MODE_ constant.
    virtual ResponseInfo<SetClient> setOmsTlsMode(long const& mode) const;
    // Hands out the access rule service.
    virtual ResponseInfo<GetClient> getRmAccess(RmAccessClient& access) const;
    // Hands out the access to NTP.
    virtual ResponseInfo<GetClient> getNtpAccess(NtpAccessClient& access) const;
    // Hands out the access to DHCP.
    virtual ResponseInfo<GetClient> getDhcpAccess(DhcpAccessClient& access) const;
    // Hands out all ATM interfaces.
    virtual ResponseInfo<GetClient> getAtmIfNetSequence(TipprmiSequence<AtmIfNetClient>& interfaces) const;
    // Hands out the ATM interface of a name.
    virtual ResponseInfo<GetClient> getAtmIfNet(std::string const& name, AtmIfNetClient& ifNet) const;
    // Hands out the Ethernet interface of the local management port (LMP).
    virtual ResponseInfo<GetClient> getLMPIfNet(EthIfNetClient& ifNet) const;
    // Hands out the Ethernet interface of the transport side.
    virtual ResponseInfo<GetClient> getTransportIfNet(EthIfNetClient& ifNet) const;
    // Hands out all multilink interfaces.
    virtual ResponseInfo<GetClient> getIp3IfNetSequence(TipprmiSequence<Ip3IfNetClient>& interfaces) const;
    // Hands out the parameters of the transport mode.
    virtual ResponseInfo<GetClient> getTransportModePar(TransportModeParClient& parameters) const;
    // Hands out the dedicated routing table of a number, which is the second argument here; the server decides what
    // the number means.
    virtual ResponseInfo<GetClient> getDedicatedIpRoutingTable(IpRoutingTableClient& table, long const& number) const;
    // Hands out the node-level supervision by bidirectional forwarding detection (BFD).
    virtual ResponseInfo<GetClient> getBfdIpIub(BfdIpIubClient& bfd) const;
    // Hands out the DiffServ-to-VLAN map.
    virtual ResponseInfo<GetClient> getDiffServToVlanMap(DiffServToVlanMapClient& map) const;
    // Hands out the IPsec switch.
    virtual ResponseInfo<GetClient> getIpSec(IpSecClient& ipSec) const;
    // Sets the IP configuration entry of a name, one of the ID texts. The server decides what the second address and
    // the text mean, and the number outside BTS_ID.
    virtual ResponseInfo<SetClient> setIpConfig(std::string const& name, TipprmiArray<short, 4> const& address,
                                                TipprmiArray<short, 4> const& address2, unsigned long const& number,
                                                std::string const& text) const;
    // Resets the IP configuration entries.
    virtual ResponseInfo<SetClient> resetIpConfig() const;
    // Reads the IP configuration entry of a name, one of the ID texts. The first address of BTS_PRIMARY_ID is the
    // unit's public address; the number of BTS_ID identifies the base station.
    virtual ResponseInfo<GetClient> getIpConfig(std::string const& name, TipprmiArray<short, 4>& address,
                                                TipprmiArray<short, 4>& address2, unsigned long& number,
                                                std::string& text) const;
    // Hands out the interface of a number.
    virtual ResponseInfo<GetClient> getIfNet(long const& number, IfNetClient& ifNet) const;
    // Reads whether ICMP requests are answered.
    virtual ResponseInfo<GetClient> getIcmpResponseEnabled(bool& enabled) const;
    // Sets whether ICMP requests are answered.
    virtual ResponseInfo<SetClient> setIcmpResponseEnabled(bool const& enabled) const;
    // Sets whether proxy ARP is enabled.
    virtual ResponseInfo<SetClient> setProxyArpEnableStatus(bool const& enabled) const;
    // Reads whether proxy ARP is enabled.
    virtual ResponseInfo<GetClient> getProxyArpEnableStatus(bool& enabled) const;
    // Sets whether the management plane's virtual address is activated.
    virtual ResponseInfo<SetClient> setMplaneActivated(bool const& activated) const;
    // Reads whether the management plane's virtual address is activated.
    virtual ResponseInfo<GetClient> getMplaneActivated(bool& activated) const;
    // Sets the management plane's virtual address; the server decides what the second address means.
    virtual ResponseInfo<SetClient> setMplaneVirtualIpAddress(TipprmiArray<short, 4> const& address,
                                                              TipprmiArray<short, 4> const& address2) const;
    // Reads the management plane's virtual address; the server decides what the second address means.
    virtual ResponseInfo<GetClient> getMplaneVirtualIpAddress(TipprmiArray<short, 4>& address,
                                                              TipprmiArray<short, 4>& address2) const;
    // Sets the address of GTP-U supervision.
    virtual ResponseInfo<SetClient> setGtpuSupervisoryIpAddress(TipprmiArray<short, 4> const& address) const;
    // Reads the address of GTP-U supervision.
    virtual ResponseInfo<GetClient> getGtpuSupervisoryIpAddress(TipprmiArray<short, 4>& address) const;
    // Sets the addresses of adjacent base stations, IPv4 only.
    virtual ResponseInfo<SetClient>
    setAdjEnbIpAddressList(TipprmiSequence<TipprmiArray<short, 4>> const& addresses) const;
    // Reads the addresses of adjacent base stations, IPv4 only.
    virtual ResponseInfo<GetClient> getAdjEnbIpAddressList(TipprmiSequence<TipprmiArray<short, 4>>& addresses) const;
    // Sets the addresses of adjacent base stations, each in both forms.
    virtual ResponseInfo<SetClient> setAdjEnbIpAddressSeq(TipprmiSequence<IpAddressPair> const& addresses) const;
    // Reads the addresses of adjacent base stations, each in both forms.
    virtual ResponseInfo<GetClient> getAdjEnbIpAddressSeq(TipprmiSequence<IpAddressPair>& addresses) const;
    // Sets the addresses of the serving gateways, each in both forms.
    virtual ResponseInfo<SetClient> setSgwIpAddressSeq(TipprmiSequence<IpAddressPair> const& addresses) const;
    // Reads the addresses of the serving gateways, each in both forms.
    virtual ResponseInfo<GetClient> getSgwIpAddressSeq(TipprmiSequence<IpAddressPair>& addresses) const;
    // Sets the single serving gateway address, beside the list.
    virtual ResponseInfo<SetClient> setSgwIpAddress(TipprmiArray<short, 4> const& address) const;
    // Reads the single serving gateway address, beside the list.
    virtual ResponseInfo<GetClient> getSgwIpAddress(TipprmiArray<short, 4>& address) const;
    // Reads the node's maximum transmission unit (MTU).
    virtual ResponseInfo<GetClient> getMtu(long& mtu) const;
    // Sets the node's MTU: as IfNetClient::setMtu().
    virtual ResponseInfo<SetClient> setMtu(long const& mtu) const;
    // Reads whether the data communication network (DCN) is available.
    virtual ResponseInfo<GetClient> getDcnAvailable(bool& available) const;
    // Sets whether the DCN is available.
    virtual ResponseInfo<SetClient> setDcnAvailable(bool const& available) const;
    // Sets the base station's primary address; the server decides what the second address means.
    virtual ResponseInfo<SetClient> setBtsPrimaryIpAddress(TipprmiArray<short, 4> const& address,
                                                           TipprmiArray<short, 4> const& address2) const;
    // Sets the primary address; another operation than setBtsPrimaryIpAddress(), spelled with Adr. The server decides
    // what the second address means.
    virtual ResponseInfo<SetClient> setPrimIpAdr(TipprmiArray<short, 4> const& address,
                                                 TipprmiArray<short, 4> const& address2) const;
    // Sets the module identifier.
    virtual ResponseInfo<SetClient> setModuleId(unsigned long const& moduleId) const;
    // Reads the module identifier.
    virtual ResponseInfo<GetClient> getModuleId(unsigned long& moduleId) const;
    // Creates an ATM interface and hands it out.
    virtual ResponseInfo<RunClient> createAtmIfNet(AtmIfNetCreateParam const& param, AtmIfNetClient& ifNet) const;
    // Deletes an ATM interface.
    virtual ResponseInfo<RunClient> deleteAtmIfNet(AtmIfNetClient const& ifNet) const;
    // Configures an ATM interface from what BOOTP told; the server decides which address is which.
    virtual ResponseInfo<RunClient> configureFromBootp(AtmIfNetClient const& ifNet,
                                                       TipprmiArray<short, 4> const& address,
                                                       TipprmiArray<short, 4> const& address2) const;
    // Creates a multilink interface and hands it out.
    virtual ResponseInfo<RunClient> createIp3IfNet(Ip3IfNetClient::Cfg const& cfg, Ip3IfNetClient& ifNet) const;
    // Deletes a multilink interface.
    virtual ResponseInfo<RunClient> deleteIp3IfNet(Ip3IfNetClient const& ifNet) const;
    // Sets the Qubo software support.
    virtual ResponseInfo<SetClient> setQuboSwSupport(QuboSwSupport const& support) const;
    // Reads the Qubo software support.
    virtual ResponseInfo<GetClient> getQuboSwSupport(QuboSwSupport& support) const;
    // Sets the Qubo operating mode; spelled with a lower-case m.
    virtual ResponseInfo<SetClient> setQubomode(Qubomode const& mode) const;
    // Reads the Qubo operating mode; spelled with a lower-case m.
    virtual ResponseInfo<GetClient> getQubomode(Qubomode& mode) const;
    // Reads whether links are numbered; spelled with a lower-case n.
    virtual bool getnumberedLinks() const;
    // Pings the remote end. The server's answer; it decides which address is which and what the number means.
    virtual bool pingRemoteEnd(TipprmiArray<short, 4> const& address, TipprmiArray<short, 4> const& address2,
                               long const& number) const;
    // Sets the result of a ping of the remote end. A failure of the call is not reported.
    virtual void setPingRemoteEndResult(bool const& result) const;
    // Reads whether the node has been finalized.
    virtual bool isFinalizeFlagSet() const;
    // Hands out the map of traffic types to VLANs.
    virtual VlanMapClient getVlanMap() const;
    // Sets whether Ethernet security is activated; spelled with a lower-case a.
    virtual ResponseInfo<SetClient> setactEthernetSec(bool const& activated) const;
    // Reads whether Ethernet security is activated; spelled with a lower-case a.
    virtual ResponseInfo<GetClient> getactEthernetSec(bool& activated) const;
    // Makes the node check and mark deferred routes. A failure of the call is not reported.
    virtual void triggerCheckAndMarkDeferredRoutes() const;
};

template <>
struct Operations<IpNodeClient>
    : OperationList<
          IpNodeClient, 0x644e82af, Operation<0, &IpNodeClient::getTransportMode>,
          Operation<1, &IpNodeClient::setTransportMode>, Operation<2, &IpNodeClient::finalize>,
          Operation<3, &IpNodeClient::getOmsTlsMode>, Operation<4, &IpNodeClient::setOmsTlsMode>,
          Operation<5, &IpNodeClient::getRmAccess>, Operation<6, &IpNodeClient::getNtpAccess>,
          Operation<7, &IpNodeClient::getDhcpAccess>, Operation<8, &IpNodeClient::getAtmIfNetSequence>,
          Operation<9, &IpNodeClient::getAtmIfNet>, Operation<10, &IpNodeClient::getLMPIfNet>,
          Operation<11, &IpNodeClient::getTransportIfNet>, Operation<12, &IpNodeClient::getIp3IfNetSequence>,
          Operation<13, &IpNodeClient::getTransportModePar>, Operation<14, &IpNodeClient::getDedicatedIpRoutingTable>,
          Operation<15, &IpNodeClient::getBfdIpIub>, Operation<16, &IpNodeClient::getDiffServToVlanMap>,
          Operation<17, &IpNodeClient::getIpSec>, Operation<18, &IpNodeClient::setIpConfig>,
          Operation<19, &IpNodeClient::resetIpConfig>, Operation<20, &IpNodeClient::getIpConfig>,
          Operation<21, &IpNodeClient::getIfNet>, Operation<22, &IpNodeClient::getIcmpResponseEnabled>,
          Operation<23, &IpNodeClient::setIcmpResponseEnabled>, Operation<24, &IpNodeClient::setProxyArpEnableStatus>,
          Operation<25, &IpNodeClient::getProxyArpEnableStatus>, Operation<26, &IpNodeClient::setMplaneActivated>,
          Operation<27, &IpNodeClient::getMplaneActivated>, Operation<28, &IpNodeClient::setMplaneVirtualIpAddress>,
          Operation<29, &IpNodeClient::getMplaneVirtualIpAddress>,
          Operation<30, &IpNodeClient::setGtpuSupervisoryIpAddress>,
          Operation<31, &IpNodeClient::getGtpuSupervisoryIpAddress>,
          Operation<32, &IpNodeClient::setAdjEnbIpAddressList>, Operation<33, &IpNodeClient::getAdjEnbIpAddressList>,
          Operation<34, &IpNodeClient::setAdjEnbIpAddressSeq>, Operation<35, &IpNodeClient::getAdjEnbIpAddressSeq>,
          Operation<36, &IpNodeClient::setSgwIpAddressSeq>, Operation<37, &IpNodeClient::getSgwIpAddressSeq>,
          Operation<38, &IpNodeClient::setSgwIpAddress>, Operation<39, &IpNodeClient::getSgwIpAddress>,
          Operation<40, &IpNodeClient::getMtu>, Operation<41, &IpNodeClient::setMtu>,
          Operation<42, &IpNodeClient::getDcnAvailable>, Operation<43, &IpNodeClient::setDcnAvailable>,
          Operation<44, &IpNodeClient::setBtsPrimaryIpAddress>, Operation<45, &IpNodeClient::setPrimIpAdr>,
          Operation<46, &IpNodeClient::setModuleId>, Operation<47, &IpNodeClient::getModuleId>,
          Operation<48, &IpNodeClient::createAtmIfNet>, Operation<49, &IpNodeClient::deleteAtmIfNet>,
          Operation<50, &IpNodeClient::configureFromBootp>, Operation<51, &IpNodeClient::createIp3IfNet>,
          Operation<52, &IpNodeClient::deleteIp3IfNet>, Operation<53, &IpNodeClient::setQuboSwSupport>,
          Operation<54, &IpNodeClient::getQuboSwSupport>, Operation<55, &IpNodeClient::setQubomode>,
          Operation<56, &IpNodeClient::getQubomode>, Operation<57, &IpNodeClient::getnumberedLinks>,
          Operation<58, &IpNodeClient::pingRemoteEnd>, Operation<59, &IpNodeClient::setPingRemoteEndResult>,
          Operation<60, &IpNodeClient::isFinalizeFlagSet>, Operation<61, &IpNodeClient::getVlanMap>,
          Operation<62, &IpNodeClient::setactEthernetSec>, Operation<63, &IpNodeClient::getactEthernetSec>,
          Operation<64, &IpNodeClient::triggerCheckAndMarkDeferredRoutes>> {};
