// IpRouteEntryClient: one route entry of a routing table, handed out by IpRoutingTableClient::getIpRouteEntries().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"

// Tells the entry's destination, mask, gateway and network type; nothing can be set here. Addresses and masks are
// single 32-bit numbers, unlike those of IpRoutingTableClient. Numbers are 0 when the call fails, as it does once the
// entry is gone from its table. The server decides what the network types mean.
class IpRouteEntryClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    IpRouteEntryClient() = default;
    explicit IpRouteEntryClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<IpRouteEntryClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // All that an entry tells, at once.
    struct Cfg {
        unsigned long destination;
        unsigned long netmask;
        unsigned long gateway;
        long networkType;
    };

    // Reads the whole entry; `cfg` is left as it was when the call fails.
    virtual void getRouteCfg(Cfg& cfg) const;
    // Reads the destination address.
    virtual unsigned long getDestination() const;
    // Reads the destination mask.
    virtual unsigned long getNetmask() const;
    // Reads the gateway address.
    virtual unsigned long getGateway() const;
    // Reads the network type.
    virtual long getNetworkType() const;
};

template <>
struct RecordFields<IpRouteEntryClient::Cfg>
    : Fields<&IpRouteEntryClient::Cfg::destination, &IpRouteEntryClient::Cfg::netmask,
             &IpRouteEntryClient::Cfg::gateway, &IpRouteEntryClient::Cfg::networkType> {};

template <>
struct Operations<IpRouteEntryClient>
    : OperationList<IpRouteEntryClient, 0x9e6ab1b1, Operation<0, &IpRouteEntryClient::getRouteCfg>,
                    Operation<1, &IpRouteEntryClient::getDestination>, Operation<2, &IpRouteEntryClient::getNetmask>,
                    Operation<3, &IpRouteEntryClient::getGateway>, Operation<4, &IpRouteEntryClient::getNetworkType>> {
};
