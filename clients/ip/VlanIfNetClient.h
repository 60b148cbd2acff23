// VlanIfNetClient: an IP interface on a VLAN of an Ethernet interface, handed out by EthIfNetClient::createVlan() and
// getVlanIfNet() and by VlanIfNetFabricClient.
#pragma once

#include "clients/ip/IfNetBfdIpIubClient.h"
#include "clients/ip/IfNetClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"

// Adds the VLAN identifier, shaping rates, addresses, BFD settings and switches for quality of service (QoS). The
// proxy designates its interface until that is destroyed. All operations report a status; out-arguments count only
// when it is OK.
class VlanIfNetClient : public IfNetClient {
public:
    using Parent = IfNetClient;
    using IfNetClient::IfNetClient;

    using ClientSpecificMetaObject = ProxyMetaObject<VlanIfNetClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The bounds and the steps of shaping values, for callers; the proxy checks nothing.
    // setSIR():
    static constexpr int SIR_MIN = 0;
    static constexpr int SIR_MAX = 1000000;
    static constexpr int SIR_STEP = 100;
    // setShaperBurstSize():
    static constexpr int SBS_MIN = 1522;
    static constexpr int SBS_MAX = 2000000;
    static constexpr int SBS_STEP = 1;
    // setCommittedInfoRate():
    static constexpr int CIR_MIN = 0;
    static constexpr int CIR_MAX = 1000000;
    static constexpr int CIR_STEP = 100;
    // The identifiers of the VLAN's 15-minute counters: packets and octets received, packets and octets sent.
    static constexpr int ETH_VLAN_IDENT_IN_PKT_15M = 1;
    static constexpr int ETH_VLAN_IDENT_IN_OCT_15M = 2;
    static constexpr int ETH_VLAN_IDENT_OUT_PKT_15M = 3;
    static constexpr int ETH_VLAN_IDENT_OUT_OCT_15M = 4;

    // The addresses of a VLAN interface, an octet per element. The server decides what the second one means.
    struct IpAddressInfo {
        TipprmiArray<short, 4> ipAddress;
        TipprmiArray<short, 4> address2;
    };
    // The BFD settings of a VLAN interface to be created, named after the operations of IfNetBfdIpIubClient. Proxies
    // only send them; which of the flags and which of the addresses is which, the server decides.
    struct BfdInfo {
        bool bfdActivation;
        bool bfdAdminUp;
        bool bfdActivation2;
        bool bfdAdminUp2;
        TipprmiArray<short, 4> bfdDestAddress;
        TipprmiArray<short, 4> bfdDestAddress2;
        unsigned short bfdSourceUdpPort;
        IfNetBfdIpIubClient::BfdTypePort bfdTypeUdpPort;
        IfNetBfdIpIubClient::BfdTimer bfdTimer; // as IfNetBfdIpIubClient::setBfdTimer()
    };
    // What a VLAN interface is created from, named after the operations below. Proxies only send it; which of the
    // unsigned long values is which, the server decides.
    struct VlanIfNetCreateParams {
        unsigned short vlanId;           // as setVlanId()
        unsigned long committedInfoRate; // as setCommittedInfoRate()
        unsigned long sir;               // as setSIR()
        bool vlanShapingEnabled;
        IpAddressInfo ipAddressInfo;
        unsigned long shaperBurstSize; // as setShaperBurstSize()
        BfdInfo bfdInfo;
        unsigned long vlanInstanceId;
        bool qosEnabled;
        bool cesopsn;
    };

    // Sets the VLAN identifier: 1..4094 (IEEE 802.1Q).
    virtual ResponseInfo<SetClient> setVlanId(unsigned short const& vlanId) const;
    // Reads the VLAN identifier.
    virtual ResponseInfo<GetClient> getVlanId(unsigned short& vlanId) const;
    // Sets the committed information rate (CIR): CIR_MIN..CIR_MAX step CIR_STEP.
    virtual ResponseInfo<SetClient> setCommittedInfoRate(unsigned long const& rate) const;
    // Reads the committed information rate.
    virtual ResponseInfo<GetClient> getCommittedInfoRate(unsigned long& rate) const;
    // Sets the SIR: SIR_MIN..SIR_MAX step SIR_STEP. Spelled in capitals, unlike EthIfNetClient::setSir().
    virtual ResponseInfo<SetClient> setSIR(unsigned long const& sir) const;
    // Reads the SIR. Spelled in capitals as well.
    virtual ResponseInfo<GetClient> getSIR(unsigned long& sir) const;
    // Sets whether the VLAN is shaped.
    virtual ResponseInfo<SetClient> setVlanShapingEnabled(bool const& enabled) const;
    // Reads whether the VLAN is shaped.
    virtual ResponseInfo<GetClient> getVlanShapingEnabled(bool& enabled) const;
    // Sets the addresses.
    virtual ResponseInfo<SetClient> setIpAddressInfo(IpAddressInfo const& info) const;
    // Reads the addresses.
    virtual ResponseInfo<GetClient> getIpAddressInfo(IpAddressInfo& info) const;
    // Sets the shaper burst size (SBS): SBS_MIN..SBS_MAX step SBS_STEP.
    virtual ResponseInfo<SetClient> setShaperBurstSize(unsigned long const& size) const;
    // Reads the shaper burst size.
    virtual ResponseInfo<GetClient> getShaperBurstSize(unsigned long& size) const;
    // Reads the interface's settings of bidirectional forwarding detection (BFD).
    virtual ResponseInfo<GetClient> getIfNetBfdIpIub(IfNetBfdIpIubClient& bfd) const;
    // Sets whether QoS is enabled.
    virtual ResponseInfo<SetClient> setQosEnabled(bool const& enabled) const;
    // Reads whether QoS is enabled.
    virtual ResponseInfo<GetClient> getQosEnabled(bool& enabled) const;
    // Sets the switch for circuit emulation over packets (CESoPSN).
    virtual ResponseInfo<SetClient> setCesopsn(bool const& enabled) const;
    // Reads the switch for circuit emulation over packets (CESoPSN).
    virtual ResponseInfo<GetClient> getCesopsn(bool& enabled) const;
    // Reads the instance identifier of the VLAN, which is given at creation: nothing sets it afterwards.
    virtual ResponseInfo<GetClient> getVlanInstanceId(unsigned long& instanceId) const;
};

template <>
struct RecordFields<VlanIfNetClient::IpAddressInfo>
    : Fields<&VlanIfNetClient::IpAddressInfo::ipAddress, &VlanIfNetClient::IpAddressInfo::address2> {};

template <>
struct RecordFields<VlanIfNetClient::BfdInfo>
    : Fields<&VlanIfNetClient::BfdInfo::bfdActivation, &VlanIfNetClient::BfdInfo::bfdAdminUp,
             &VlanIfNetClient::BfdInfo::bfdActivation2, &VlanIfNetClient::BfdInfo::bfdAdminUp2,
             &VlanIfNetClient::BfdInfo::bfdDestAddress, &VlanIfNetClient::BfdInfo::bfdDestAddress2,
             &VlanIfNetClient::BfdInfo::bfdSourceUdpPort, &VlanIfNetClient::BfdInfo::bfdTypeUdpPort,
             &VlanIfNetClient::BfdInfo::bfdTimer> {};

template <>
struct RecordFields<VlanIfNetClient::VlanIfNetCreateParams>
    : Fields<&VlanIfNetClient::VlanIfNetCreateParams::vlanId,
             &VlanIfNetClient::VlanIfNetCreateParams::committedInfoRate, &VlanIfNetClient::VlanIfNetCreateParams::sir,
             &VlanIfNetClient::VlanIfNetCreateParams::vlanShapingEnabled,
             &VlanIfNetClient::VlanIfNetCreateParams::ipAddressInfo,
             &VlanIfNetClient::VlanIfNetCreateParams::shaperBurstSize, &VlanIfNetClient::VlanIfNetCreateParams::bfdInfo,
             &VlanIfNetClient::VlanIfNetCreateParams::vlanInstanceId,
             &VlanIfNetClient::VlanIfNetCreateParams::qosEnabled, &VlanIfNetClient::VlanIfNetCreateParams::cesopsn> {};

template <>
inline constexpr bool isSentOnly<VlanIfNetClient::BfdInfo> = true;

template <>
inline constexpr bool isSentOnly<VlanIfNetClient::VlanIfNetCreateParams> = true;

template <>
struct Operations<VlanIfNetClient>
    : OperationList<VlanIfNetClient, 0x0172a837, Operation<0, &VlanIfNetClient::setVlanId>,
                    Operation<1, &VlanIfNetClient::getVlanId>, Operation<2, &VlanIfNetClient::setCommittedInfoRate>,
                    Operation<3, &VlanIfNetClient::getCommittedInfoRate>, Operation<4, &VlanIfNetClient::setSIR>,
                    Operation<5, &VlanIfNetClient::getSIR>, Operation<6, &VlanIfNetClient::setVlanShapingEnabled>,
                    Operation<7, &VlanIfNetClient::getVlanShapingEnabled>,
                    Operation<8, &VlanIfNetClient::setIpAddressInfo>, Operation<9, &VlanIfNetClient::getIpAddressInfo>,
                    Operation<10, &VlanIfNetClient::setShaperBurstSize>,
                    Operation<11, &VlanIfNetClient::getShaperBurstSize>,
                    Operation<12, &VlanIfNetClient::getIfNetBfdIpIub>, Operation<13, &VlanIfNetClient::setQosEnabled>,
                    Operation<14, &VlanIfNetClient::getQosEnabled>, Operation<15, &VlanIfNetClient::setCesopsn>,
                    Operation<16, &VlanIfNetClient::getCesopsn>, Operation<17, &VlanIfNetClient::getVlanInstanceId>> {};
