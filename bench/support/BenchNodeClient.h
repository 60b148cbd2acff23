// BenchNodeClient: the object that the benchmarks call. It has the shapes of the catalogue's commonest operations.
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class BenchNodeClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    BenchNodeClient() = default;
    explicit BenchNodeClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<BenchNodeClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Four IPv4 addresses of four octets each: 32 bytes on the wire.
    struct Addresses {
        TipprmiArray<short, 4> own{};
        TipprmiArray<short, 4> mask{};
        TipprmiArray<short, 4> gateway{};
        TipprmiArray<short, 4> peer{};
        friend bool operator==(Addresses const&, Addresses const&) = default;
    };

    // Reads a number.
    virtual ResponseInfo<GetClient> getNumber(long& number) const;
    // Reads the whole table of addresses.
    virtual ResponseInfo<GetClient> getTable(TipprmiSequence<Addresses>& table) const;
};

template <>
struct RecordFields<BenchNodeClient::Addresses>
    : Fields<&BenchNodeClient::Addresses::own, &BenchNodeClient::Addresses::mask, &BenchNodeClient::Addresses::gateway,
             &BenchNodeClient::Addresses::peer> {};

template <>
struct Operations<BenchNodeClient>
    : OperationList<BenchNodeClient, 0x76c47f57, Operation<0, &BenchNodeClient::getNumber>,
                    Operation<1, &BenchNodeClient::getTable>> {};

namespace bench {

inline constexpr unsigned long tableLength = 1000;
inline constexpr std::size_t tableValues = tableLength * 16;
inline constexpr std::size_t tableBytes = tableValues * 2;

// A table of `tableLength` entries, no two alike.
TipprmiSequence<BenchNodeClient::Addresses> makeTable();
// The same 16-bit values back to back.
std::vector<std::uint16_t> makeFlatTable();

} // namespace bench
