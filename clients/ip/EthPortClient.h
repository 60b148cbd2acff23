// EthPortClient: the port of an Ethernet link, handed out by EthLinkClient::getPort().
#pragma once

#include "clients/ip/EthUnitClient.h"
#include "clients/transmission/TransmissionPortClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// A transmission port that leads to its Ethernet unit.
class EthPortClient : public TransmissionPortClient {
public:
    using Parent = TransmissionPortClient;
    using TransmissionPortClient::TransmissionPortClient;

    using ClientSpecificMetaObject = ProxyMetaObject<EthPortClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the unit that the port belongs to; unbound when the call fails.
    virtual EthUnitClient getUnit() const;
};

template <>
struct Operations<EthPortClient> : OperationList<EthPortClient, 0x7049db15, Operation<0, &EthPortClient::getUnit>> {};
