// IpRoutingTableClient: one routing table of the IP node, handed out by IpNodeClient::getDedicatedIpRoutingTable(),
// which selects it by number.
#pragma once

#include "clients/ip/IpRouteEntryClient.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Lists and edits the configured routes, as a whole list or route by route, reports the routes in effect and the
// forwarding table, and resolves and stores next hops. All operations report a status; out-arguments count only when
// it is OK. Addresses and masks are arrays of octets, the first octet first.
class IpRoutingTableClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<IpRoutingTableClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Bits of IpRoute::flags, with a double underscore; 0x0040, 0x0080, 0x0200 and 0x2000 have no name.
    static constexpr unsigned short RTF__UP = 0x0001;
    static constexpr unsigned short RTF__GATEWAY = 0x0002;
    static constexpr unsigned short RTF__HOST = 0x0004;
    static constexpr unsigned short RTF__REJECT = 0x0008;
    static constexpr unsigned short RTF__DYNAMIC = 0x0010;
    static constexpr unsigned short RTF__MODIFIED = 0x0020;
    static constexpr unsigned short RTF__CLONING = 0x0100;
    static constexpr unsigned short RTF__LLINFO = 0x0400;
    static constexpr unsigned short RTF__STATIC = 0x0800;
    static constexpr unsigned short RTF__BLACKHOLE = 0x1000;
    static constexpr unsigned short RTF__PROTO2 = 0x4000;
    static constexpr unsigned short RTF__PROTO1 = 0x8000;

    // The configuration of one route.
    struct IpRouteEntryCfg {
        TipprmiArray<short, 4> destination;
        TipprmiArray<short, 4> netmask; // contiguous netmask of the destination
        TipprmiArray<short, 4> gateway;
    };
    // The type of a route; the server decides what the values mean.
    enum IpRouteType : int {
        IP_ROUTE_TYPE_0 = 0,
    };
    // One route as the table reports it. The server decides what auxLong, auxShort, name, address3, linkAddress and
    // address4 mean.
    struct IpRoute {
        TipprmiArray<short, 4> destination;
        TipprmiArray<short, 4> netmask; // contiguous netmask of the destination
        unsigned long auxLong;
        unsigned short flags; // RTF__ bits
        short auxShort;
        IpRouteType type;
        std::string name;
        TipprmiArray<short, 4> address3;
        TipprmiArray<short, 6> linkAddress; // in the form of an Ethernet address
        TipprmiArray<short, 4> address4;
    };

    // Reads the route entries as objects. One may cease to exist once routes are applied, destroyed or deleted.
    virtual ResponseInfo<GetClient> getIpRouteEntries(TipprmiSequence<IpRouteEntryClient>& entries) const;
    // Reads the configuration of all routes.
    virtual ResponseInfo<GetClient> getIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg>& routes) const;
    // Makes a complete list of routes the configuration; what an empty list means, the server decides.
    virtual ResponseInfo<SetClient> applyIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg> const& routes) const;
    // Merges a list of routes into the configuration.
    virtual ResponseInfo<SetClient> mergeIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg> const& routes) const;
    // Takes a list of routes out of the configuration.
    virtual ResponseInfo<SetClient> destroyIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg> const& routes) const;
    // Reads the routes.
    virtual ResponseInfo<GetClient> getIpRouteSequence(TipprmiSequence<IpRoute>& routes) const;
    // Reads the forwarding table.
    virtual ResponseInfo<GetClient> getIpForwardingSequence(TipprmiSequence<IpRoute>& routes) const;
    // Resolves the next hop towards an address; what the flag asks for, the server decides.
    virtual ResponseInfo<GetClient> getNexthop(TipprmiArray<short, 4> const& address, bool const& flag,
                                               TipprmiArray<short, 4>& nexthop) const;
    // Stores the address of a next hop.
    virtual ResponseInfo<SetClient> storeNexthop(TipprmiArray<short, 4> const& nexthop) const;
    // Reads the network type, a value of the kind that IpRouteEntryClient::getNetworkType() returns.
    virtual ResponseInfo<GetClient> getNetworkType(long& networkType) const;
    // Adds one route.
    virtual ResponseInfo<RunClient> createIpRoute(IpRouteEntryCfg const& route) const;
    // Removes one route.
    virtual ResponseInfo<RunClient> deleteIpRoute(IpRouteEntryCfg const& route) const;
    // Stores the forwarding table.
    virtual ResponseInfo<SetClient> storeIpForwardingSequence(TipprmiSequence<IpRoute> const& routes) const;
};

template <>
struct RecordFields<IpRoutingTableClient::IpRouteEntryCfg>
    : Fields<&IpRoutingTableClient::IpRouteEntryCfg::destination, &IpRoutingTableClient::IpRouteEntryCfg::netmask,
             &IpRoutingTableClient::IpRouteEntryCfg::gateway> {};

template <>
struct RecordFields<IpRoutingTableClient::IpRoute>
    : Fields<&IpRoutingTableClient::IpRoute::destination, &IpRoutingTableClient::IpRoute::netmask,
             &IpRoutingTableClient::IpRoute::auxLong, &IpRoutingTableClient::IpRoute::flags,
             &IpRoutingTableClient::IpRoute::auxShort, &IpRoutingTableClient::IpRoute::type,
             &IpRoutingTableClient::IpRoute::name, &IpRoutingTableClient::IpRoute::address3,
             &IpRoutingTableClient::IpRoute::linkAddress, &IpRoutingTableClient::IpRoute::address4> {};

template <>
struct Operations<IpRoutingTableClient>
    : OperationList<
          IpRoutingTableClient, 0xdaf5930f, Operation<0, &IpRoutingTableClient::getIpRouteEntries>,
          Operation<1, &IpRoutingTableClient::getIpRouteEntriesCfg>,
          Operation<2, &IpRoutingTableClient::applyIpRouteEntriesCfg>,
          Operation<3, &IpRoutingTableClient::mergeIpRouteEntriesCfg>,
          Operation<4, &IpRoutingTableClient::destroyIpRouteEntriesCfg>,
          Operation<5, &IpRoutingTableClient::getIpRouteSequence>,
          Operation<6, &IpRoutingTableClient::getIpForwardingSequence>, Operation<7, &IpRoutingTableClient::getNexthop>,
          Operation<8, &IpRoutingTableClient::storeNexthop>, Operation<9, &IpRoutingTableClient::getNetworkType>,
          Operation<10, &IpRoutingTableClient::createIpRoute>, Operation<11, &IpRoutingTableClient::deleteIpRoute>,
          Operation<12, &IpRoutingTableClient::storeIpForwardingSequence>> {};
