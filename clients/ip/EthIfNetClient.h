// EthIfNetClient: an IP interface on Ethernet. IpNodeClient::getLMPIfNet() and getTransportIfNet() hand out the one of
// the local management port and the one of the transport side.
#pragma once

#include "clients/ip/EthLinkClient.h"
#include "clients/ip/IfNetBfdIpIubClient.h"
#include "clients/ip/IfNetClient.h"
#include "clients/ip/VlanIfNetClient.h"
#include "clients/ip/VlanIfNetFabricClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

// Adds traffic shaping, VLANs, proxy ARP and the Ethernet links that carry the interface. Out-arguments count only
// when the status is OK. The operations on links, VLAN tags and the VLAN fabric report no status: the reading ones
// return an unbound proxy or an empty sequence when the call fails.
class EthIfNetClient : public IfNetClient {
public:
    using Parent = IfNetClient;
    using IfNetClient::IfNetClient;

    using ClientSpecificMetaObject = ProxyMetaObject<EthIfNetClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The bounds and the steps of shaping values, for callers; the proxy checks nothing. SBS and SIR have none.
    // setShapedBandwidth():
    static constexpr int SHAPED_BW_MIN = 500;
    static constexpr int SHAPED_BW_MAX = 1000000;
    static constexpr int SHAPED_BW_STEP = 100;
    // setSirTotal():
    static constexpr int SIRTOTAL_MIN = 100;
    static constexpr int SIRTOTAL_MAX = 1000000;
    static constexpr int SIRTOTAL_STEP = 100;
    // setSbsTotal():
    static constexpr int SBSTOTAL_MIN = 1522;
    static constexpr int SBSTOTAL_MAX = 2000000;
    static constexpr int SBSTOTAL_STEP = 1;
    // setCir():
    static constexpr int CIR_MIN = 0;
    static constexpr int CIR_MAX = 1000000;
    static constexpr int CIR_STEP = 100;

    // The traffic path shaping of the interface; the server decides what the values mean.
    enum TrafficPathShaping : int {
        TRAFFIC_PATH_SHAPING_0 = 0,
    };

    // Resets the address entries that IfNetClient::setIpAddrSequence() sets.
    virtual ResponseInfo<SetClient> resetIpAddrSequence() const;
    // Sets the shaped bandwidth: SHAPED_BW_MIN..SHAPED_BW_MAX step SHAPED_BW_STEP.
    virtual ResponseInfo<SetClient> setShapedBandwidth(long const& bandwidth) const;
    // Reads the shaped bandwidth.
    virtual ResponseInfo<GetClient> getShapedBandwidth(long& bandwidth) const;
    // Reads whether upper layers are shaped.
    virtual ResponseInfo<GetClient> getUpperLayerShaping(bool& shaping) const;
    // Sets whether upper layers are shaped.
    virtual ResponseInfo<SetClient> setUpperLayerShaping(bool const& shaping) const;
    // Reads the Ethernet address, an octet per element.
    virtual ResponseInfo<GetClient> getEthernetAddress(TipprmiArray<short, 6>& address) const;
    // Sets the restriction of the local management port.
    virtual ResponseInfo<SetClient> setLmpRestriction(bool const& restricted) const;
    // Reads the restriction of the local management port.
    virtual ResponseInfo<GetClient> getLmpRestriction(bool& restricted) const;
    // Makes the interface answer ARP requests on behalf of an IPv4 address.
    virtual ResponseInfo<RunClient> createProxyArp(TipprmiArray<short, 4> const& address) const;
    // Ends that.
    virtual ResponseInfo<RunClient> deleteProxyArp(TipprmiArray<short, 4> const& address) const;
    // Adds a VLAN interface and hands it out; it lasts until deleteVlan() or until the VLAN fabric destroys it.
    virtual ResponseInfo<RunClient> createVlan(VlanIfNetClient::VlanIfNetCreateParams const& params,
                                               VlanIfNetClient& vlan) const;
    // Removes the VLAN interface of a VLAN identifier: as VlanIfNetClient::setVlanId().
    virtual ResponseInfo<RunClient> deleteVlan(unsigned short const& vlanId) const;
    // Hands out the VLAN interface of a VLAN identifier, as VlanIfNetClient::setVlanId(); a run operation, although its
    // name starts with get.
    virtual ResponseInfo<RunClient> getVlanIfNet(unsigned short const& vlanId, VlanIfNetClient& vlan) const;
    // Reads whether VLANs are enabled.
    virtual ResponseInfo<GetClient> getVlanEnabled(bool& enabled) const;
    // Sets whether VLANs are enabled.
    virtual ResponseInfo<SetClient> setVlanEnabled(bool const& enabled) const;
    // Sets the VLAN identifier: 0..4094 (IEEE 802.1Q), 0 for none.
    virtual ResponseInfo<SetClient> setVlanId(unsigned short const& vlanId) const;
    // Reads the VLAN identifier.
    virtual ResponseInfo<GetClient> getVlanId(unsigned short& vlanId) const;
    // Records two parameters of the device; the server decides what they mean.
    virtual ResponseInfo<SetClient> recordDeviceParams(unsigned long const& param1, unsigned long const& param2) const;
    // Reads the Ethernet links that carry the interface.
    virtual TipprmiSequence<EthLinkClient> getLinks() const;
    // Sets the Ethernet links that carry the interface.
    virtual void setLinks(TipprmiSequence<EthLinkClient> const& links) const;
    // Reads which of the links is the active one.
    virtual EthLinkClient getActiveLink() const;
    // Sets which of the links is the active one.
    virtual void setActiveLink(EthLinkClient const& link) const;
    // Reads the VLAN tags.
    virtual TipprmiSequence<unsigned short> getVlanTags() const;
    // Sets the VLAN tags: as VlanIfNetClient::setVlanId().
    virtual void setVlanTags(TipprmiSequence<unsigned short> const& tags) const;
    // Reads the factory and container of VLAN interfaces.
    virtual VlanIfNetFabricClient getVlanIfNetFabric() const;
    // Reads the interface's settings of bidirectional forwarding detection (BFD).
    virtual ResponseInfo<GetClient> getIfNetBfdIpIub(IfNetBfdIpIubClient& bfd) const;
    // Tells the interface of a change of the transport address that concerns BFD.
    virtual ResponseInfo<SetClient> setTrsIpChangeForBfd() const;
    // Sets the shaper burst size (SBS).
    virtual ResponseInfo<SetClient> setSbs(unsigned long const& sbs) const;
    // Reads the shaper burst size (SBS).
    virtual ResponseInfo<GetClient> getSbs(unsigned long& sbs) const;
    // Sets the total SBS: SBSTOTAL_MIN..SBSTOTAL_MAX step SBSTOTAL_STEP.
    virtual ResponseInfo<SetClient> setSbsTotal(unsigned long const& sbsTotal) const;
    // Reads the total SBS; spelled with a lower-case t, unlike setSbsTotal().
    virtual ResponseInfo<GetClient> getSbstotal(unsigned long& sbsTotal) const;
    // Sets the SIR.
    virtual ResponseInfo<SetClient> setSir(unsigned long const& sir) const;
    // Reads the SIR.
    virtual ResponseInfo<GetClient> getSir(unsigned long& sir) const;
    // Sets the total SIR: SIRTOTAL_MIN..SIRTOTAL_MAX step SIRTOTAL_STEP.
    virtual ResponseInfo<SetClient> setSirTotal(unsigned long const& sirTotal) const;
    // Reads the total SIR.
    virtual ResponseInfo<GetClient> getSirTotal(unsigned long& sirTotal) const;
    // Sets the committed information rate (CIR): CIR_MIN..CIR_MAX step CIR_STEP.
    virtual ResponseInfo<SetClient> setCir(unsigned long const& cir) const;
    // Reads the committed information rate (CIR).
    virtual ResponseInfo<GetClient> getCir(unsigned long& cir) const;
    // Sets the traffic path shaping: a setting, not a flag, despite the name.
    virtual ResponseInfo<SetClient> setTrafficPathShapingEnable(TrafficPathShaping const& shaping) const;
    // Reads the traffic path shaping.
    virtual ResponseInfo<GetClient> getTrafficPathShapingEnable(TrafficPathShaping& shaping) const;
    // Sets whether quality of service (QoS) is enabled.
    virtual ResponseInfo<SetClient> setQosEnable(bool const& enabled) const;
    // Reads whether quality of service (QoS) is enabled.
    virtual ResponseInfo<GetClient> getQosEnable(bool& enabled) const;
};

template <>
struct Operations<EthIfNetClient>
    : OperationList<
          EthIfNetClient, 0x86977205, Operation<0, &EthIfNetClient::resetIpAddrSequence>,
          Operation<1, &EthIfNetClient::setShapedBandwidth>, Operation<2, &EthIfNetClient::getShapedBandwidth>,
          Operation<3, &EthIfNetClient::getUpperLayerShaping>, Operation<4, &EthIfNetClient::setUpperLayerShaping>,
          Operation<5, &EthIfNetClient::getEthernetAddress>, Operation<6, &EthIfNetClient::setLmpRestriction>,
          Operation<7, &EthIfNetClient::getLmpRestriction>, Operation<8, &EthIfNetClient::createProxyArp>,
          Operation<9, &EthIfNetClient::deleteProxyArp>, Operation<10, &EthIfNetClient::createVlan>,
          Operation<11, &EthIfNetClient::deleteVlan>, Operation<12, &EthIfNetClient::getVlanIfNet>,
          Operation<13, &EthIfNetClient::getVlanEnabled>, Operation<14, &EthIfNetClient::setVlanEnabled>,
          Operation<15, &EthIfNetClient::setVlanId>, Operation<16, &EthIfNetClient::getVlanId>,
          Operation<17, &EthIfNetClient::recordDeviceParams>, Operation<18, &EthIfNetClient::getLinks>,
          Operation<19, &EthIfNetClient::setLinks>, Operation<20, &EthIfNetClient::getActiveLink>,
          Operation<21, &EthIfNetClient::setActiveLink>, Operation<22, &EthIfNetClient::getVlanTags>,
          Operation<23, &EthIfNetClient::setVlanTags>, Operation<24, &EthIfNetClient::getVlanIfNetFabric>,
          Operation<25, &EthIfNetClient::getIfNetBfdIpIub>, Operation<26, &EthIfNetClient::setTrsIpChangeForBfd>,
          Operation<27, &EthIfNetClient::setSbs>, Operation<28, &EthIfNetClient::getSbs>,
          Operation<29, &EthIfNetClient::setSbsTotal>, Operation<30, &EthIfNetClient::getSbstotal>,
          Operation<31, &EthIfNetClient::setSir>, Operation<32, &EthIfNetClient::getSir>,
          Operation<33, &EthIfNetClient::setSirTotal>, Operation<34, &EthIfNetClient::getSirTotal>,
          Operation<35, &EthIfNetClient::setCir>, Operation<36, &EthIfNetClient::getCir>,
          Operation<37, &EthIfNetClient::setTrafficPathShapingEnable>,
          Operation<38, &EthIfNetClient::getTrafficPathShapingEnable>, Operation<39, &EthIfNetClient::setQosEnable>,
          Operation<40, &EthIfNetClient::getQosEnable>> {};
