// VirtualChannelConnectionTpClient: the termination point of a virtual channel, handed out by
// VirtualChannelTrailTpClient::getAssociatedVccTp() and as the ends of an AtmVcCrossConnectionClient.
#pragma once

#include "clients/transmission/VirtualConnectionTpClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

class AtmVcCrossConnectionClient;
class VirtualChannelTrailTpClient;

// Tells and sets the channel's VPI and VCI, frame discard, cross-connection, trail and fault propagation. Out-arguments
// count only when the status is OK. Operations with a plain result return zero or false when the call fails; the bool
// of a setting operation is the server's answer. Operations named internal are called like all others.
class VirtualChannelConnectionTpClient : public VirtualConnectionTpClient {
public:
    using Parent = VirtualConnectionTpClient;
    using VirtualConnectionTpClient::VirtualConnectionTpClient;

    using ClientSpecificMetaObject = ProxyMetaObject<VirtualChannelConnectionTpClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The cell counters of the channel's performance service: cells in, cells out, and cells discarded for congestion
    // on their way out.
    static constexpr int TOT_CELLS_INGRESS = 1;
    static constexpr int TOT_CELLS_EGRESS = 11;
    static constexpr int DISC_CELLS_CONGEST_EGRESS = 21;

    // Reads the virtual path identifier (VPI) and the virtual channel identifier (VCI). A run operation.
    virtual ResponseInfo<RunClient> getVpiVci(long& vpi, long& vci) const;
    // Reads the VPI and the VCI that are used on the low level. A run operation.
    virtual ResponseInfo<RunClient> getLowLevelVpiVci(long& vpi, long& vci) const;
    // Reads the handle of the channel's connection over the backplane.
    virtual long getBackplaneConnectionHandle() const;
    // Reads whether frames are discarded in the egress direction.
    virtual bool getEgressFrameDiscardEnabled() const;
    // Reads whether frames are discarded in the ingress direction.
    virtual bool getIngressFrameDiscardEnabled() const;
    // Sets whether frames are discarded in the egress direction. Whether the server accepted it.
    virtual bool setEgressFrameDiscardEnabled(bool const& enabled) const;
    // Sets whether frames are discarded in the ingress direction. Whether the server accepted it.
    virtual bool setIngressFrameDiscardEnabled(bool const& enabled) const;
    // Reads the cross-connection that the channel belongs to.
    virtual ResponseInfo<GetClient> getCrossConnection(AtmVcCrossConnectionClient& crossConnection) const;
    // Reads the termination point that is associated with this one.
    virtual ResponseInfo<GetClient> getAssociatedTp(VirtualChannelConnectionTpClient& tp) const;
    // Reads the trail that ends the channel.
    virtual ResponseInfo<GetClient> getChannelTrail(VirtualChannelTrailTpClient& trail) const;
    // Reads whether faults are propagated.
    virtual bool getFaultPropagation() const;
    // Records the cross-connection that the channel belongs to.
    virtual ResponseInfo<RunClient> internalSetCrossConnection(AtmVcCrossConnectionClient const& crossConnection) const;
    // Records that the channel belongs to no cross-connection.
    virtual ResponseInfo<RunClient> internalResetCrossConnection() const;
    // Connects the trail that ends the channel.
    virtual ResponseInfo<RunClient> internalConnectChannelTrail(VirtualChannelTrailTpClient const& trail) const;
    // Disconnects the trail that ended the channel.
    virtual ResponseInfo<RunClient> internalDisconnectChannelTrail(VirtualChannelTrailTpClient const& trail) const;
    // Sets whether faults are propagated.
    virtual ResponseInfo<RunClient> internalSetFaultPropagation(bool const& propagate) const;
    // Brings the status of performance monitoring up to date.
    virtual ResponseInfo<SetClient> refreshPmStatus() const;
    // Brings the bandwidth of the bundle of virtual channels up to date; what the flag means, the server decides.
    virtual ResponseInfo<SetClient> updateVcBundleBandwidth(bool const& flag) const;
};

template <>
struct Operations<VirtualChannelConnectionTpClient>
    : OperationList<VirtualChannelConnectionTpClient, 0x32763195,
                    Operation<0, &VirtualChannelConnectionTpClient::getVpiVci>,
                    Operation<1, &VirtualChannelConnectionTpClient::getLowLevelVpiVci>,
                    Operation<2, &VirtualChannelConnectionTpClient::getBackplaneConnectionHandle>,
                    Operation<3, &VirtualChannelConnectionTpClient::getEgressFrameDiscardEnabled>,
                    Operation<4, &VirtualChannelConnectionTpClient::getIngressFrameDiscardEnabled>,
                    Operation<5, &VirtualChannelConnectionTpClient::setEgressFrameDiscardEnabled>,
                    Operation<6, &VirtualChannelConnectionTpClient::setIngressFrameDiscardEnabled>,
                    Operation<7, &VirtualChannelConnectionTpClient::getCrossConnection>,
                    Operation<8, &VirtualChannelConnectionTpClient::getAssociatedTp>,
                    Operation<9, &VirtualChannelConnectionTpClient::getChannelTrail>,
                    Operation<10, &VirtualChannelConnectionTpClient::getFaultPropagation>,
                    Operation<11, &VirtualChannelConnectionTpClient::internalSetCrossConnection>,
                    Operation<12, &VirtualChannelConnectionTpClient::internalResetCrossConnection>,
                    Operation<13, &VirtualChannelConnectionTpClient::internalConnectChannelTrail>,
                    Operation<14, &VirtualChannelConnectionTpClient::internalDisconnectChannelTrail>,
                    Operation<15, &VirtualChannelConnectionTpClient::internalSetFaultPropagation>,
                    Operation<16, &VirtualChannelConnectionTpClient::refreshPmStatus>,
                    Operation<17, &VirtualChannelConnectionTpClient::updateVcBundleBandwidth>> {};
