// AtmVcCrossConnectionClient: the cross-connection of two virtual channels, handed out by
// VirtualChannelConnectionTpClient::getCrossConnection().
#pragma once

#include "clients/transmission/AtmCrossConnectionClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// Tells both ends; they are unbound when the call fails.
class AtmVcCrossConnectionClient : public AtmCrossConnectionClient {
public:
    using Parent = AtmCrossConnectionClient;
    using AtmCrossConnectionClient::AtmCrossConnectionClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AtmVcCrossConnectionClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the termination point of the one channel.
    virtual VirtualChannelConnectionTpClient getTerminationA() const;
    // Reads the termination point of the other channel.
    virtual VirtualChannelConnectionTpClient getTerminationB() const;
};

template <>
struct Operations<AtmVcCrossConnectionClient>
    : OperationList<AtmVcCrossConnectionClient, 0x6f16cff7, Operation<0, &AtmVcCrossConnectionClient::getTerminationA>,
                    Operation<1, &AtmVcCrossConnectionClient::getTerminationB>> {};
