#include "unit/RoutingTable.h"

#include "unit/Status.h"

#include <algorithm>

namespace trs::sim {

namespace {

constexpr unsigned long mostRoutes = 4096;

auto sameAs(IpRoutingTableClient::IpRouteEntryCfg const& route)
{
    return [&route](IpRoutingTableClient::IpRouteEntryCfg const& other) {
        return other.destination == route.destination && other.netmask == route.netmask &&
               other.gateway == route.gateway;
    };
}

} // namespace

RoutingTable::RoutingTable(Inventory& inventory, std::string const& id)
    : servant_(TipprmiOID(id)), managed_(inventory, servant_, reflect::className<IpRoutingTableClient>)
{
    insert({makeAddress(0, 0, 0, 0), makeAddress(0, 0, 0, 0), makeAddress(10, 1, 0, 254)});
    insert({makeAddress(10, 2, 0, 0), makeAddress(255, 255, 0, 0), makeAddress(10, 1, 0, 253)});
    insert({makeAddress(192, 168, 255, 0), makeAddress(255, 255, 255, 0), makeAddress(192, 168, 255, 1)});
    serveConfiguration();
    servant_
        .on<&IpRoutingTableClient::getIpRouteSequence>([this](TipprmiSequence<IpRoutingTableClient::IpRoute>& routes) {
            routes = inEffect();
            return GetClient::OK;
        })
        .on<&IpRoutingTableClient::getIpForwardingSequence>(
            [this](TipprmiSequence<IpRoutingTableClient::IpRoute>& routes) {
                routes = inEffect();
                return GetClient::OK;
            })
        .on<&IpRoutingTableClient::createIpRoute>(
            [this](Route const& route) { return statusOf<RunClient>(insert(route)); })
        .on<&IpRoutingTableClient::deleteIpRoute>(
            [this](Route const& route) { return statusOf<RunClient>(remove(route)); });
}

void RoutingTable::serveConfiguration()
{
    servant_
        .on<&IpRoutingTableClient::getIpRouteEntriesCfg>([this](Routes& routes) {
            routes = routes_;
            return GetClient::OK;
        })
        .on<&IpRoutingTableClient::applyIpRouteEntriesCfg>([this](Routes const& routes) {
            if (routes.getLength() > mostRoutes) {
                return SetClient::FAILED;
            }
            routes_ = routes;
            return SetClient::OK;
        })
        .on<&IpRoutingTableClient::mergeIpRouteEntriesCfg>([this](Routes const& routes) {
            return std::count_if(routes.begin(), routes.end(), [this](Route const& route) { return insert(route); }) !=
                           0
                       ? SetClient::OK
                       : SetClient::FAILED;
        })
        .on<&IpRoutingTableClient::destroyIpRouteEntriesCfg>([this](Routes const& routes) {
            return std::count_if(routes.begin(), routes.end(), [this](Route const& route) { return remove(route); }) !=
                           0
                       ? SetClient::OK
                       : SetClient::FAILED;
        });
}

bool RoutingTable::insert(Route const& route)
{
    if (routes_.getLength() == mostRoutes || std::any_of(routes_.begin(), routes_.end(), sameAs(route))) {
        return false;
    }
    routes_.push_back(route);
    return true;
}

bool RoutingTable::remove(Route const& route)
{
    auto const kept = std::remove_if(routes_.begin(), routes_.end(), sameAs(route));
    bool const isFound = kept != routes_.end();
    routes_.setLength(static_cast<unsigned long>(kept - routes_.begin()));
    return isFound;
}

TipprmiSequence<IpRoutingTableClient::IpRoute> RoutingTable::inEffect() const
{
    TipprmiSequence<IpRoutingTableClient::IpRoute> routes;
    for (Route const& configured : routes_) {
        IpRoutingTableClient::IpRoute route{};
        route.destination = configured.destination;
        route.netmask = configured.netmask;
        route.address3 = configured.gateway;
        route.flags =
            IpRoutingTableClient::RTF__UP | IpRoutingTableClient::RTF__GATEWAY | IpRoutingTableClient::RTF__STATIC;
        routes.push_back(route);
    }
    return routes;
}

} // namespace trs::sim
