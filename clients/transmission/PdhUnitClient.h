// PdhUnitClient: a transmission unit with PDH lines (E1, T1 or JT1), handed out by the getUnit() of the multilink
// objects Mlp3EndpointClient, Mlp3LinkClient and Mlp3HdlcClient.
#pragma once

#include "clients/transmission/TransmissionUnitClient.h"
#include "platform/QelLongClient.h"
#include "platform/QelShortClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/TipprmiSequence.h"

// Discovers and sets the line settings of the unit. The attribute objects are read and written with their own get() and
// set(); they are unbound when the call fails.
class PdhUnitClient : public TransmissionUnitClient {
public:
    using Parent = TransmissionUnitClient;
    using TransmissionUnitClient::TransmissionUnitClient;

    using ClientSpecificMetaObject = ProxyMetaObject<PdhUnitClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Path types, as TransmissionPortClient has them.
    static constexpr int E1 = 11;
    static constexpr int T1 = 12;
    static constexpr int JT1 = 13;
    static constexpr int JT2 = 14;
    // Where the Zq channel lies: in one or several bits of timeslot 0, or in timeslot 16.
    static constexpr short ZQ_TS0_BIT_5 = 1;
    static constexpr short ZQ_TS0_BIT_6 = 2;
    static constexpr short ZQ_TS0_BIT_7 = 3;
    static constexpr short ZQ_TS0_BIT_8 = 4;
    static constexpr short ZQ_TS0_BIT_5_6 = 5;
    static constexpr short ZQ_TS0_BIT_7_8 = 6;
    static constexpr short ZQ_TS0_BIT_5_TO_8 = 7;
    static constexpr short ZQ_TS16 = 8;

    // The settings of one line. The server decides what the six values mean; the names follow position.
    struct PdhInfo {
        unsigned long value1;
        long value2;
        long value3;
        long value4;
        long value5;
        long value6;
    };
    // The settings of the unit.
    struct PdhInfoSeq {
        bool flag;                      // the server decides what it means
        TipprmiSequence<PdhInfo> lines; // one entry per line, in the unit's order
    };

    // Discovers the settings of all lines; there are no lines and the flag is false when the call fails.
    virtual PdhInfoSeq discoverPdhSettings() const;
    // Sets the lines up.
    virtual void setPdhSettings(PdhInfoSeq const& settings) const;
    // Reads the attribute object whose value is the path type, one of E1..JT2.
    virtual QelLongClient getPathType() const;
    // Reads the attribute object whose value is the framing mode of the path.
    virtual QelLongClient getPathFramingMode() const;
    // Reads the attribute object whose value tells where the Zq channel lies: a ZQ_ constant.
    virtual QelShortClient getZqBitPosition() const;
};

template <>
struct RecordFields<PdhUnitClient::PdhInfo>
    : Fields<&PdhUnitClient::PdhInfo::value1, &PdhUnitClient::PdhInfo::value2, &PdhUnitClient::PdhInfo::value3,
             &PdhUnitClient::PdhInfo::value4, &PdhUnitClient::PdhInfo::value5, &PdhUnitClient::PdhInfo::value6> {};
template <>
struct RecordFields<PdhUnitClient::PdhInfoSeq>
    : Fields<&PdhUnitClient::PdhInfoSeq::flag, &PdhUnitClient::PdhInfoSeq::lines> {};

template <>
struct Operations<PdhUnitClient>
    : OperationList<PdhUnitClient, 0xd9533b78, Operation<0, &PdhUnitClient::discoverPdhSettings>,
                    Operation<1, &PdhUnitClient::setPdhSettings>, Operation<2, &PdhUnitClient::getPathType>,
                    Operation<3, &PdhUnitClient::getPathFramingMode>, Operation<4, &PdhUnitClient::getZqBitPosition>> {
};
