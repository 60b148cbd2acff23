// EthLinkClient: one Ethernet link, handed out by EthIfNetClient::getLinks() and getActiveLink().
#pragma once

#include "clients/ip/EthPortClient.h"
#include "clients/services/ConditionClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Has a packet size, accepted frame types, shaping, a transmission mode, information from its driver, VLAN tags and
// three fault conditions. No operation reports a status. The reading ones return an unbound proxy, an empty sequence,
// 0 or a structure of zeros and empty texts when the call fails; the others, from setPacketSize() on, return nothing,
// unlike most that set. The server decides what the values of the enumerations mean; a proxy carries any.
class EthLinkClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<EthLinkClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The performance counters: octets and packets in and out, packets in with errors or of an unknown protocol,
    // packets discarded by shaping, packets in with an unknown VLAN or PSN header, severely errored and unavailable
    // seconds.
    static constexpr int PM_IDENT_IN_OCT_15 = 1;
    static constexpr int PM_IDENT_OUT_OCT_15 = 2;
    static constexpr int PM_IDENT_IN_PKT_15 = 3;
    static constexpr int PM_IDENT_OUT_PKT_15 = 4;
    static constexpr int PM_IDENT_IN_PKT_ERR_15 = 5;
    static constexpr int PM_IDENT_IN_UNKNOWN_PROTOCOL_15 = 6;
    static constexpr int PM_IDENT_OUT_DISC_SHAPING_15 = 7;
    static constexpr int PM_IDENT_IN_UNKNOWN_VLAN_15 = 8;
    static constexpr int PM_IDENT_IN_UNKNOWN_PSN_HDR_15 = 9;
    static constexpr int PM_IDENT_SES_15 = 10;
    static constexpr int PM_IDENT_UAS_15 = 11;
    // The bounds of setPacketSize(), for callers; the proxy checks nothing.
    static constexpr int PACKETSIZE_MIN = 64;
    static constexpr int PACKETSIZE_MAX = 1522;
    // The bounds and the step of setShapedBw(), for callers; the last is the upper bound of a gigabit link.
    static constexpr int SHAPED_BW_MIN = 0;
    static constexpr int SHAPED_BW_MAX = 100000000;
    static constexpr int SHAPED_BW_STEP = 500000;
    static constexpr int SHAPED_BW_MAX_GE = 1000000000;

    // The frame types that the link accepts.
    enum AccFrameType : int {
        ACC_FRAME_TYPE_0 = 0,
    };
    // The duplex mode.
    enum DuplexType : int {
        DUPLEX_TYPE_0 = 0,
    };
    // The setting of speed and duplex mode.
    enum SpeedAndDuplexType : int {
        SPEED_AND_DUPLEX_TYPE_0 = 0,
    };
    // What the link is assigned to.
    enum InterfaceAssignmentType : int {
        INTERFACE_ASSIGNMENT_TYPE_0 = 0,
    };
    // The type of the link.
    enum EthernetLinkType : int {
        ETHERNET_LINK_TYPE_0 = 0,
    };
    // The capacity.
    enum CapacityType : int {
        CAPACITY_TYPE_0 = 0,
    };
    // The physical type.
    enum PhysicalType : int {
        PHYSICAL_TYPE_0 = 0,
    };
    // The result of auto-negotiation; the name begins with a lower-case letter.
    enum autoNegResultType : int {
        AUTO_NEG_RESULT_TYPE_0 = 0,
    };

    // The transmission mode, read and set as a whole.
    struct TransmissionMode {
        SpeedAndDuplexType speedAndDuplex;
        CapacityType capacity;
        DuplexType duplex;
    };
    // What the driver tells about the link; the server decides what the text means.
    struct DriverInfo {
        PhysicalType physicalType;
        TipprmiArray<unsigned char, 6> hardwareAddress; // octets, unlike Ethernet addresses elsewhere
        CapacityType capacity;
        std::string text;
        autoNegResultType autoNegResult;
    };

    // Reads the link's port.
    virtual EthPortClient getPort() const;
    // Reads the VLAN tags that are attached to the link.
    virtual TipprmiSequence<unsigned short> getVlanTags() const;
    // Reads the packet size.
    virtual long getPacketSize() const;
    // Reads the accepted frame types.
    virtual AccFrameType getAccFrameType() const;
    // Reads the shaped bandwidth.
    virtual long getShapedBw() const;
    // Reads the transmission mode.
    virtual TransmissionMode getTransmissionMode() const;
    // Reads the driver's information.
    virtual DriverInfo getDriverInfo() const;
    // Reads the LOC condition.
    virtual ConditionClient getLOC() const;
    // Reads the condition about the compatibility of the pluggable module (SFP).
    virtual ConditionClient getSfpCompl() const;
    // Reads the condition about the hardware of the pluggable module (SFP).
    virtual ConditionClient getSfpHw() const;
    // Reads the default transmission mode.
    virtual TransmissionMode getDefaultTransmissionMode() const;
    // Reads the duplex mode.
    virtual DuplexType getDuplexMode() const;
    // Reads the setting of speed and duplex mode.
    virtual SpeedAndDuplexType getSpeedAndDuplex() const;
    // Reads what the link is assigned to.
    virtual InterfaceAssignmentType getInterfaceAssignment() const;
    // Reads the type of the link.
    virtual EthernetLinkType getEthernetLinkType() const;
    // Sets the packet size: PACKETSIZE_MIN..PACKETSIZE_MAX.
    virtual void setPacketSize(long const& size) const;
    // Sets the accepted frame types.
    virtual void setAccFrameType(AccFrameType const& type) const;
    // Sets the shaped bandwidth: SHAPED_BW_MIN..SHAPED_BW_MAX_GE step SHAPED_BW_STEP; SHAPED_BW_MAX is the upper bound
    // where the link is no gigabit link.
    virtual void setShapedBw(long const& bandwidth) const;
    // Sets the transmission mode.
    virtual void setTransmissionMode(TransmissionMode const& mode) const;
    // Sets the driver's information.
    virtual void setDriverInfo(DriverInfo const& info) const;
    // Sets speed and duplex mode.
    virtual void setSpeedAndDuplex(SpeedAndDuplexType const& setting) const;
    // Sets what the link is assigned to.
    virtual void setInterfaceAssignment(InterfaceAssignmentType const& assignment) const;
    // Attaches VLAN tags to the link: as VlanIfNetClient::setVlanId().
    virtual void attachVlanTags(TipprmiSequence<unsigned short> const& tags) const;
    // Detaches VLAN tags from the link: as VlanIfNetClient::setVlanId().
    virtual void detachVlanTags(TipprmiSequence<unsigned short> const& tags) const;
};

template <>
struct RecordFields<EthLinkClient::TransmissionMode>
    : Fields<&EthLinkClient::TransmissionMode::speedAndDuplex, &EthLinkClient::TransmissionMode::capacity,
             &EthLinkClient::TransmissionMode::duplex> {};

template <>
struct RecordFields<EthLinkClient::DriverInfo>
    : Fields<&EthLinkClient::DriverInfo::physicalType, &EthLinkClient::DriverInfo::hardwareAddress,
             &EthLinkClient::DriverInfo::capacity, &EthLinkClient::DriverInfo::text,
             &EthLinkClient::DriverInfo::autoNegResult> {};

template <>
struct Operations<EthLinkClient>
    : OperationList<
          EthLinkClient, 0x05741f28, Operation<0, &EthLinkClient::getPort>, Operation<1, &EthLinkClient::getVlanTags>,
          Operation<2, &EthLinkClient::getPacketSize>, Operation<3, &EthLinkClient::getAccFrameType>,
          Operation<4, &EthLinkClient::getShapedBw>, Operation<5, &EthLinkClient::getTransmissionMode>,
          Operation<6, &EthLinkClient::getDriverInfo>, Operation<7, &EthLinkClient::getLOC>,
          Operation<8, &EthLinkClient::getSfpCompl>, Operation<9, &EthLinkClient::getSfpHw>,
          Operation<10, &EthLinkClient::getDefaultTransmissionMode>, Operation<11, &EthLinkClient::getDuplexMode>,
          Operation<12, &EthLinkClient::getSpeedAndDuplex>, Operation<13, &EthLinkClient::getInterfaceAssignment>,
          Operation<14, &EthLinkClient::getEthernetLinkType>, Operation<15, &EthLinkClient::setPacketSize>,
          Operation<16, &EthLinkClient::setAccFrameType>, Operation<17, &EthLinkClient::setShapedBw>,
          Operation<18, &EthLinkClient::setTransmissionMode>, Operation<19, &EthLinkClient::setDriverInfo>,
          Operation<20, &EthLinkClient::setSpeedAndDuplex>, Operation<21, &EthLinkClient::setInterfaceAssignment>,
          Operation<22, &EthLinkClient::attachVlanTags>, Operation<23, &EthLinkClient::detachVlanTags>> {};
