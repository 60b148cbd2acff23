// The routing table of the simulated unit: what IpRoutingTableClient and IpRouteEntryClient reach.
#pragma once

#include "clients/ip/IpRouteEntryClient.h"
#include "clients/ip/IpRoutingTableClient.h"
#include "unit/IpInterface.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trs::sim {

// A route's gateway is in the network of an interface, and its destination has no bits beyond the mask. Routes are in
// effect while an interface that is up leads to their gateways.
class RoutingTable {
public:
    // How long the prefix of the interfaces' network is that an address is in; -1: none. `onlyUp`: of those that are
    // up.
    using Prefix = std::function<int(Address const& address, bool onlyUp)>;

    RoutingTable(Inventory& inventory, std::string const& id, Prefix prefix);
    RoutingTable(RoutingTable const&) = delete;
    RoutingTable& operator=(RoutingTable const&) = delete;
    ~RoutingTable();

    auto proxy() const { return table_.proxy<IpRoutingTableClient>(); }

private:
    using Route = IpRoutingTableClient::IpRouteEntryCfg;
    using Routes = TipprmiSequence<Route>;
    class Entry;

    void serveConfiguration();
    void serveEffect();
    static bool isTwice(Routes const& routes);
    bool isSound(Route const& route) const;
    bool areSound(Routes const& routes) const;
    bool insert(Route const& route);
    bool remove(Route const& route);
    bool replace(Routes const& routes);
    void makeEntries();
    bool isUp(Route const& route) const { return prefix_(route.gateway, true) >= 0; }
    TipprmiSequence<IpRoutingTableClient::IpRoute> routes(bool onlyUp) const;
    bool findNexthop(Address const& address, Address& nexthop) const;

    Prefix const prefix_;
    Routes routes_;
    Managed table_;
    std::vector<std::unique_ptr<Entry>> entries_; // of the routes, in their order
};

} // namespace trs::sim
