// VirtualChannelTrailTpClient: the termination point of a virtual channel trail, handed out by
// VirtualChannelConnectionTpClient::getChannelTrail().
#pragma once

#include "clients/transmission/AtmPersistentAppObjectClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

// The base of Aal5VirtualChannelTrailTpClient. Ends a virtual channel and raises alarms on it.
class VirtualChannelTrailTpClient : public AtmPersistentAppObjectClient {
public:
    using Parent = AtmPersistentAppObjectClient;
    using AtmPersistentAppObjectClient::AtmPersistentAppObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<VirtualChannelTrailTpClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the termination point of the channel that the trail ends; unbound when the call fails.
    virtual VirtualChannelConnectionTpClient getAssociatedVccTp() const;
    // Initialises the trail with the termination point of its channel and a value whose meaning the server decides. The
    // server's answer; false when the call fails.
    virtual bool init(VirtualChannelConnectionTpClient const& vccTp, long const& value) const;
    // Marks the trail as in use.
    virtual ResponseInfo<SetClient> setInUse() const;
    // Marks the trail as out of use.
    virtual ResponseInfo<SetClient> setOutOfUse() const;
    // Reads whether the trail is in use. The status itself is the answer: a failed call cannot be told from FAILED.
    virtual ResponseInfo<GetClient> isInUse() const;
    // Sets the VIF number.
    virtual ResponseInfo<SetClient> setVif(unsigned long const& vif) const;
    // Reads the VIF number, which counts only when the status is OK.
    virtual ResponseInfo<GetClient> getVif(unsigned long& vif) const;
    // Raises an alarm indication signal (AIS) on the channel.
    virtual ResponseInfo<RunClient> raiseAisAlarm() const;
    // Raises a remote defect indication (RDI) on the channel.
    virtual ResponseInfo<RunClient> raiseRdiAlarm() const;
    // Cancels the alarm that was raised on the channel.
    virtual ResponseInfo<RunClient> raiseCancelAlarm() const;
};

template <>
struct Operations<VirtualChannelTrailTpClient>
    : OperationList<
          VirtualChannelTrailTpClient, 0x2b36eb70, Operation<0, &VirtualChannelTrailTpClient::getAssociatedVccTp>,
          Operation<1, &VirtualChannelTrailTpClient::init>, Operation<2, &VirtualChannelTrailTpClient::setInUse>,
          Operation<3, &VirtualChannelTrailTpClient::setOutOfUse>, Operation<4, &VirtualChannelTrailTpClient::isInUse>,
          Operation<5, &VirtualChannelTrailTpClient::setVif>, Operation<6, &VirtualChannelTrailTpClient::getVif>,
          Operation<7, &VirtualChannelTrailTpClient::raiseAisAlarm>,
          Operation<8, &VirtualChannelTrailTpClient::raiseRdiAlarm>,
          Operation<9, &VirtualChannelTrailTpClient::raiseCancelAlarm>> {};
