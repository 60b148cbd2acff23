#include "bench/support/BenchNodeClient.h"

#include "rmi/Call.h"

BenchNodeClient::ClientSpecificMetaObject BenchNodeClient::oMeta;
TreflectMetaObject* BenchNodeClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> BenchNodeClient::getNumber(long& number) const
{
    return call<&BenchNodeClient::getNumber>(*this, number);
}
ResponseInfo<GetClient> BenchNodeClient::getTable(TipprmiSequence<Addresses>& table) const
{
    return call<&BenchNodeClient::getTable>(*this, table);
}

std::vector<std::uint16_t> bench::makeFlatTable()
{
    std::vector<std::uint16_t> values(tableValues);
    for (std::size_t i = 0; i < tableValues; ++i) {
        values[i] = static_cast<std::uint16_t>(i);
    }
    return values;
}

TipprmiSequence<BenchNodeClient::Addresses> bench::makeTable()
{
    std::vector<std::uint16_t> const values = makeFlatTable();
    std::size_t next = 0;
    TipprmiSequence<BenchNodeClient::Addresses> table;
    table.setLength(tableLength);
    for (BenchNodeClient::Addresses& entry : table) {
        RecordFields<BenchNodeClient::Addresses>::forEach(entry, [&](TipprmiArray<short, 4>& address) {
            for (unsigned long i = 0; i < 4; ++i) {
                address[i] = static_cast<short>(values[next++]);
            }
        });
    }
    return table;
}
