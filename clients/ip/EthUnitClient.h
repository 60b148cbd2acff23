// EthUnitClient: the unit of an Ethernet port, handed out by EthPortClient::getUnit().
#pragma once

#include "clients/transmission/TransmissionUnitClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// A transmission unit without operations of its own.
class EthUnitClient : public TransmissionUnitClient {
public:
    using Parent = TransmissionUnitClient;
    using TransmissionUnitClient::TransmissionUnitClient;
    ~EthUnitClient() override;

    using ClientSpecificMetaObject = ProxyMetaObject<EthUnitClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();
};

template <>
struct Operations<EthUnitClient> : OperationList<EthUnitClient, 0xef638a8a> {};
