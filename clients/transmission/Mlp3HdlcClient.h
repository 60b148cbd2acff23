// Mlp3HdlcClient: the HDLC channel of a multilink member link, handed out by Mlp3LinkClient::getHdlc().
#pragma once

#include "clients/transmission/PdhUnitClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "clients/transmission/TransmissionIfClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// Tells the PDH unit, the compression and the transmission interface of the channel. Results are an unbound proxy or
// false when the call fails.
class Mlp3HdlcClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<Mlp3HdlcClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The octet and packet counters of the channel's performance service, numbered apart from the endpoint's.
    static constexpr int PM_IDENT_P3_TX_OCTETS = 1;
    static constexpr int PM_IDENT_P3_RX_OCTETS = 2;
    static constexpr int PM_IDENT_P3_TX_PACKETS = 3;
    static constexpr int PM_IDENT_P3_RX_PACKETS = 4;
    static constexpr int PM_IDENT_P3_DROP_PACKETS = 5;
    static constexpr int PM_IDENT_P3_ERROR_PACKETS = 6;

    // Reads the PDH unit that the channel belongs to.
    virtual PdhUnitClient getUnit() const;
    // Reads whether the address and control fields are compressed.
    virtual bool getAcFieldCompressionOn() const;
    // Reads the transmission interface that the channel runs on.
    virtual TransmissionIfClient getTransmissionIf() const;
};

template <>
struct Operations<Mlp3HdlcClient> : OperationList<Mlp3HdlcClient, 0x7a82e634, Operation<0, &Mlp3HdlcClient::getUnit>,
                                                  Operation<1, &Mlp3HdlcClient::getAcFieldCompressionOn>,
                                                  Operation<2, &Mlp3HdlcClient::getTransmissionIf>> {};
