// TransmissionPortClient: a port of a transmission unit; handed out as the class that derives from it, by
// EthLinkClient::getPort().
#pragma once

#include "clients/transmission/PhyObjectClient.h"
#include "clients/transmission/TransmissionUnitClient.h"
#include "platform/QelLongClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

// The base of EthPortClient. Tells the path type and the synchronisation status values (SSM) of both directions.
// Operations with a plain result return an unbound proxy or zero, which is no status value, when the call fails.
class TransmissionPortClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<TransmissionPortClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Path types: SDH and SONET.
    static constexpr int STM0 = 0;
    static constexpr int STM1 = 1;
    static constexpr int STS1 = 2;
    static constexpr int STS3C = 3;
    static constexpr int STM1_VC11 = 4;
    static constexpr int STM1_VC12 = 5;
    static constexpr int STS3C_VC11 = 6;
    // Path types: PDH, after a gap, as PdhUnitClient has them.
    static constexpr int E1 = 11;
    static constexpr int T1 = 12;
    static constexpr int JT1 = 13;
    static constexpr int JT2 = 14;
    // Synchronisation status values: a numbering of this interface's own, not the 4-bit codes that SDH and SONET lines
    // carry.
    static constexpr unsigned char SYNC_TRACE_UNKNOWN = 1;
    static constexpr unsigned char DO_NOT_USE_FOR_SYNC = 2;
    static constexpr unsigned char STRATUM_1 = 3;
    static constexpr unsigned char STRATUM_2 = 4;
    static constexpr unsigned char TNC = 5;
    static constexpr unsigned char STRATUM_3E = 6;
    static constexpr unsigned char STRATUM_3 = 7;
    static constexpr unsigned char SMC = 8;
    static constexpr unsigned char STRATUM_4 = 9;
    static constexpr unsigned char PROVISIONABLE = 10;
    static constexpr unsigned char REC_G811 = 11;
    static constexpr unsigned char SSUA = 12;
    static constexpr unsigned char SSUB = 13;
    static constexpr unsigned char SETS = 14;

    // Reads the unit that the port belongs to: its proxy by value, despite the name.
    virtual TransmissionUnitClient getTransmissionUnitPtr() const;
    // Reads the attribute object whose value is the path type, one of STM0..JT2.
    virtual QelLongClient getPathType() const;
    // Reads the synchronisation status value that the port sends, as setSsmValueTx() sets it.
    virtual unsigned char getSsmValueTx() const;
    // Reads the synchronisation status value that the port receives, as setSsmValueRx() sets it.
    virtual unsigned char getSsmValueRx() const;
    // Sets the synchronisation status value that the port sends, one of SYNC_TRACE_UNKNOWN..SETS.
    virtual ResponseInfo<SetClient> setSsmValueTx(unsigned char const& value) const;
    // Sets the synchronisation status value that the port receives, as setSsmValueTx().
    virtual ResponseInfo<SetClient> setSsmValueRx(unsigned char const& value) const;
};

template <>
struct Operations<TransmissionPortClient>
    : OperationList<
          TransmissionPortClient, 0xb63082a3, Operation<0, &TransmissionPortClient::getTransmissionUnitPtr>,
          Operation<1, &TransmissionPortClient::getPathType>, Operation<2, &TransmissionPortClient::getSsmValueTx>,
          Operation<3, &TransmissionPortClient::getSsmValueRx>, Operation<4, &TransmissionPortClient::setSsmValueTx>,
          Operation<5, &TransmissionPortClient::setSsmValueRx>> {};
