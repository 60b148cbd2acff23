// TransportModeParClient: the parameters of the transport mode, well known as TRANSPORT_MODE_PAR_OID and handed out by
// IpNodeClient::getTransportModePar().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"

#include <string>

// Ports, committed bit rates, the allocation of the shared address, and the addresses of SCTP and address translation
// (NAT). Not an application object. All operations report a status; out-arguments count only when it is OK. Addresses
// and masks are arrays of octets, the first octet first.
class TransportModeParClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    TransportModeParClient() = default;
    explicit TransportModeParClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<TransportModeParClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The bounds and the defaults of parameters, for callers; the proxy checks nothing. The release timer has none.
    // setMinUdpPort():
    static constexpr int MIN_UDP_PORT_MIN = 49152;
    static constexpr int MIN_UDP_PORT_MAX = 63135;
    static constexpr int MIN_UDP_PORT_DEF = 49152;
    // setMinSctpPort():
    static constexpr int MIN_SCTP_PORT_MIN = 49152;
    static constexpr int MIN_SCTP_PORT_MAX = 65534;
    static constexpr int MIN_SCTP_PORT_DEF = 49152;
    // setCacCommittedBitRate(); these three are spelled with a single T:
    static constexpr int CAC_COMMITED_BITRATE_MIN = 400;
    static constexpr int CAC_COMMITED_BITRATE_MAX = 1000000;
    static constexpr int CAC_COMMITED_BITRATE_DEF = 400;
    // setSharedIpAllocation():
    static constexpr int SHARED_IP_ALLOCATION_MIN = 1000;
    static constexpr int SHARED_IP_ALLOCATION_MAX = 1000000;
    static constexpr int SHARED_IP_ALLOCATION_DEF = 1000;
    // setDcnCommittedBitRate():
    static constexpr int DCN_COMMITTED_BITRATE_MIN = 50;
    static constexpr int DCN_COMMITTED_BITRATE_MAX = 1000;
    static constexpr int DCN_COMMITTED_BITRATE_DEF = 50;
    // setSignallingCommittedBitRate():
    static constexpr int SIGNALLING_COMMITTED_BITRATE_MIN = 50;
    static constexpr int SIGNALLING_COMMITTED_BITRATE_MAX = 1000;
    static constexpr int SIGNALLING_COMMITTED_BITRATE_DEF = 50;
    // The identifier of the object.
    static std::string const TRANSPORT_MODE_PAR_OID;

    // Reads the lowest UDP port.
    virtual ResponseInfo<GetClient> getMinUdpPort(unsigned long& port) const;
    // Sets the lowest UDP port: MIN_UDP_PORT_MIN..MIN_UDP_PORT_MAX.
    virtual ResponseInfo<SetClient> setMinUdpPort(unsigned long const& port) const;
    // Reads the lowest SCTP port.
    virtual ResponseInfo<GetClient> getMinSctpPort(unsigned long& port) const;
    // Sets the lowest SCTP port: MIN_SCTP_PORT_MIN..MIN_SCTP_PORT_MAX.
    virtual ResponseInfo<SetClient> setMinSctpPort(unsigned long const& port) const;
    // Reads the committed bit rate of connection admission control (CAC).
    virtual ResponseInfo<GetClient> getCacCommittedBitRate(unsigned long& rate) const;
    // Sets the committed bit rate of CAC: CAC_COMMITED_BITRATE_MIN..CAC_COMMITED_BITRATE_MAX.
    virtual ResponseInfo<SetClient> setCacCommittedBitRate(unsigned long const& rate) const;
    // Reads the allocation of the shared IP address.
    virtual ResponseInfo<GetClient> getSharedIpAllocation(unsigned long& allocation) const;
    // Sets the allocation of the shared IP address: SHARED_IP_ALLOCATION_MIN..SHARED_IP_ALLOCATION_MAX.
    virtual ResponseInfo<SetClient> setSharedIpAllocation(unsigned long const& allocation) const;
    // Reads the release timer of the shared allocation; ends in IPallocation, unlike getSharedIpAllocation().
    virtual ResponseInfo<GetClient> getReleaseTimerForSharedIPallocation(unsigned long& timer) const;
    // Sets the release timer of the shared allocation; spelled the same way.
    virtual ResponseInfo<SetClient> setReleaseTimerForSharedIPallocation(unsigned long const& timer) const;
    // Reads the committed bit rate of the data communication network (DCN).
    virtual ResponseInfo<GetClient> getDcnCommittedBitRate(unsigned long& rate) const;
    // Sets the committed bit rate of the DCN: DCN_COMMITTED_BITRATE_MIN..DCN_COMMITTED_BITRATE_MAX.
    virtual ResponseInfo<SetClient> setDcnCommittedBitRate(unsigned long const& rate) const;
    // Reads the committed bit rate of signalling.
    virtual ResponseInfo<GetClient> getSignallingCommittedBitRate(unsigned long& rate) const;
    // Sets the committed bit rate of signalling: SIGNALLING_COMMITTED_BITRATE_MIN..SIGNALLING_COMMITTED_BITRATE_MAX.
    virtual ResponseInfo<SetClient> setSignallingCommittedBitRate(unsigned long const& rate) const;
    // Reads the external address of NAT.
    virtual ResponseInfo<GetClient> getExternalNatIpAddress(TipprmiArray<short, 4>& address) const;
    // Sets the external address of NAT.
    virtual ResponseInfo<SetClient> setExternalNatIpAddress(TipprmiArray<short, 4> const& address) const;
    // Reads the far end's SCTP address.
    virtual ResponseInfo<GetClient> getFarEndSctpIpAddress(TipprmiArray<short, 4>& address) const;
    // Sets the far end's SCTP address.
    virtual ResponseInfo<SetClient> setFarEndSctpIpAddress(TipprmiArray<short, 4> const& address) const;
    // Reads the mask of the far end's SCTP subnet.
    virtual ResponseInfo<GetClient> getFarEndSctpSubnetMask(TipprmiArray<short, 4>& mask) const;
    // Sets the mask of the far end's SCTP subnet, a contiguous netmask.
    virtual ResponseInfo<SetClient> setFarEndSctpSubnetMask(TipprmiArray<short, 4> const& mask) const;
    // Reads the SCTP address in use.
    virtual ResponseInfo<GetClient> getCurrentSctpIpAddress(TipprmiArray<short, 4>& address) const;
    // Sets the SCTP address in use.
    virtual ResponseInfo<SetClient> setCurrentSctpIpAddress(TipprmiArray<short, 4> const& address) const;
    // Reads the source address of SCTP.
    virtual ResponseInfo<GetClient> getSctpSrcIpAddress(TipprmiArray<short, 4>& address) const;
    // Sets the source address of SCTP.
    virtual ResponseInfo<SetClient> setSctpSrcIpAddress(TipprmiArray<short, 4> const& address) const;
};

template <>
struct Operations<TransportModeParClient>
    : OperationList<TransportModeParClient, 0xd2fe2dc5, Operation<0, &TransportModeParClient::getMinUdpPort>,
                    Operation<1, &TransportModeParClient::setMinUdpPort>,
                    Operation<2, &TransportModeParClient::getMinSctpPort>,
                    Operation<3, &TransportModeParClient::setMinSctpPort>,
                    Operation<4, &TransportModeParClient::getCacCommittedBitRate>,
                    Operation<5, &TransportModeParClient::setCacCommittedBitRate>,
                    Operation<6, &TransportModeParClient::getSharedIpAllocation>,
                    Operation<7, &TransportModeParClient::setSharedIpAllocation>,
                    Operation<8, &TransportModeParClient::getReleaseTimerForSharedIPallocation>,
                    Operation<9, &TransportModeParClient::setReleaseTimerForSharedIPallocation>,
                    Operation<10, &TransportModeParClient::getDcnCommittedBitRate>,
                    Operation<11, &TransportModeParClient::setDcnCommittedBitRate>,
                    Operation<12, &TransportModeParClient::getSignallingCommittedBitRate>,
                    Operation<13, &TransportModeParClient::setSignallingCommittedBitRate>,
                    Operation<14, &TransportModeParClient::getExternalNatIpAddress>,
                    Operation<15, &TransportModeParClient::setExternalNatIpAddress>,
                    Operation<16, &TransportModeParClient::getFarEndSctpIpAddress>,
                    Operation<17, &TransportModeParClient::setFarEndSctpIpAddress>,
                    Operation<18, &TransportModeParClient::getFarEndSctpSubnetMask>,
                    Operation<19, &TransportModeParClient::setFarEndSctpSubnetMask>,
                    Operation<20, &TransportModeParClient::getCurrentSctpIpAddress>,
                    Operation<21, &TransportModeParClient::setCurrentSctpIpAddress>,
                    Operation<22, &TransportModeParClient::getSctpSrcIpAddress>,
                    Operation<23, &TransportModeParClient::setSctpSrcIpAddress>> {};
