// The routing table of the simulated unit: what IpRoutingTableClient reaches.
#pragma once

#include "clients/ip/IpRoutingTableClient.h"
#include "unit/Interface.h"
#include "unit/Managed.h"

#include <string>

namespace trs::sim {

// Every configured route is in effect.
class RoutingTable {
public:
    RoutingTable(Inventory& inventory, std::string const& id);
    RoutingTable(RoutingTable const&) = delete;
    RoutingTable& operator=(RoutingTable const&) = delete;

    auto proxy() const { return IpRoutingTableClient(&servant_); }

private:
    using Route = IpRoutingTableClient::IpRouteEntryCfg;
    using Routes = TipprmiSequence<Route>;

    void serveConfiguration();
    bool insert(Route const& route);
    bool remove(Route const& route);
    TipprmiSequence<IpRoutingTableClient::IpRoute> inEffect() const;

    Routes routes_;
    Servant servant_;
    Managed managed_;
};

} // namespace trs::sim
