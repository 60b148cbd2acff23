#include "unit/RoutingTable.h"

#include "unit/Status.h"

#include <algorithm>
#include <bit>

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

// Whether the destination has no bits beyond the mask.
bool hasNetwork(IpRoutingTableClient::IpRouteEntryCfg const& route)
{
    return (addressNumber(route.destination) & ~addressNumber(route.netmask)) == 0;
}

} // namespace

// What the route at a place of the table is, as an object.
class RoutingTable::Entry {
public:
    Entry(Inventory& inventory, std::string const& id, RoutingTable const& table, std::size_t place)
        : object_(inventory, id, reflect::className<IpRouteEntryClient>, Object::Origin::derived)
    {
        auto const cfg = [&table, place] {
            Route const& route = table.routes_[place];
            return IpRouteEntryClient::Cfg{addressNumber(route.destination), addressNumber(route.netmask),
                                           addressNumber(route.gateway), 0};
        };
        object_.servant()
            .on<&IpRouteEntryClient::getRouteCfg>([cfg](IpRouteEntryClient::Cfg& told) { told = cfg(); })
            .on<&IpRouteEntryClient::getDestination>([cfg] { return cfg().destination; })
            .on<&IpRouteEntryClient::getNetmask>([cfg] { return cfg().netmask; })
            .on<&IpRouteEntryClient::getGateway>([cfg] { return cfg().gateway; })
            .on<&IpRouteEntryClient::getNetworkType>([cfg] { return cfg().networkType; });
    }

    auto proxy() const { return object_.proxy<IpRouteEntryClient>(); }

private:
    Object object_;
};

RoutingTable::RoutingTable(Inventory& inventory, std::string const& id, Prefix prefix)
    : prefix_(std::move(prefix)), table_(inventory, id, reflect::className<IpRoutingTableClient>)
{
    routes_.push_back({makeAddress(0, 0, 0, 0), makeAddress(0, 0, 0, 0), makeAddress(10, 1, 0, 254)});
    routes_.push_back({makeAddress(10, 2, 0, 0), makeAddress(255, 255, 0, 0), makeAddress(10, 1, 0, 253)});
    routes_.push_back({makeAddress(192, 168, 255, 0), makeAddress(255, 255, 255, 0), makeAddress(192, 168, 255, 1)});
    makeEntries();
    table_.facts().addTold<&IpRoutingTableClient::getIpRouteEntriesCfg>(
        routes_,
        [this](Routes const& routes) { // an interface that leads to a gateway may come yet
            return routes.getLength() <= mostRoutes && !isTwice(routes) && std::ranges::all_of(routes, hasNetwork) &&
                   replace(routes);
        },
        &operationOf<&IpRoutingTableClient::applyIpRouteEntriesCfg>());
    serveConfiguration();
    serveEffect();
}

RoutingTable::~RoutingTable() = default;

void RoutingTable::serveConfiguration()
{
    using Client = IpRoutingTableClient;
    table_.servant()
        .on<&Client::getIpRouteEntriesCfg>([this](Routes& routes) {
            routes = routes_;
            return GetClient::OK;
        })
        .on<&Client::getIpRouteEntries>([this](TipprmiSequence<IpRouteEntryClient>& entries) {
            for (auto const& entry : entries_) {
                entries.push_back(entry->proxy());
            }
            return GetClient::OK;
        })
        .on<&Client::applyIpRouteEntriesCfg>([this](Routes const& routes) {
            return statusOf<SetClient>(areSound(routes) && !isTwice(routes) && replace(routes));
        })
        .on<&Client::mergeIpRouteEntriesCfg>([this](Routes const& routes) {
            return statusOf<SetClient>(areSound(routes) && std::ranges::count_if(routes, [this](Route const& route) {
                                                               return insert(route);
                                                           }) != 0);
        })
        .on<&Client::destroyIpRouteEntriesCfg>([this](Routes const& routes) {
            return statusOf<SetClient>(
                std::ranges::count_if(routes, [this](Route const& route) { return remove(route); }) != 0);
        })
        .on<&Client::createIpRoute>(
            [this](Route const& route) { return statusOf<RunClient>(isSound(route) && insert(route)); })
        .on<&Client::deleteIpRoute>([this](Route const& route) { return statusOf<RunClient>(remove(route)); });
}

void RoutingTable::serveEffect()
{
    using Client = IpRoutingTableClient;
    table_.servant()
        .on<&Client::getIpRouteSequence>([this](TipprmiSequence<Client::IpRoute>& told) {
            told = routes(false);
            return GetClient::OK;
        })
        .on<&Client::getIpForwardingSequence>([this](TipprmiSequence<Client::IpRoute>& told) {
            told = routes(true);
            return GetClient::OK;
        })
        .on<&Client::getNexthop>([this](Address const& address, bool const&, Address& nexthop) {
            return statusOf<GetClient>(findNexthop(address, nexthop));
        });
}

bool RoutingTable::isTwice(Routes const& routes)
{
    return std::ranges::any_of(
        routes, [&routes](Route const& route) { return std::ranges::count_if(routes, sameAs(route)) > 1; });
}

bool RoutingTable::isSound(Route const& route) const { return hasNetwork(route) && prefix_(route.gateway, false) >= 0; }

bool RoutingTable::areSound(Routes const& routes) const
{
    return routes.getLength() <= mostRoutes &&
           std::ranges::all_of(routes, [this](Route const& route) { return isSound(route); });
}

bool RoutingTable::replace(Routes const& routes)
{
    routes_ = routes;
    makeEntries();
    return true;
}

bool RoutingTable::insert(Route const& route)
{
    if (routes_.getLength() == mostRoutes || std::ranges::any_of(routes_, sameAs(route))) {
        return false;
    }
    routes_.push_back(route);
    makeEntries();
    return true;
}

bool RoutingTable::remove(Route const& route)
{
    auto const kept = std::remove_if(routes_.begin(), routes_.end(), sameAs(route));
    bool const isFound = kept != routes_.end();
    routes_.setLength(static_cast<unsigned long>(kept - routes_.begin()));
    makeEntries();
    return isFound;
}

// As many entries as there are routes.
void RoutingTable::makeEntries()
{
    entries_.resize(std::min<std::size_t>(entries_.size(), routes_.getLength()));
    while (entries_.size() < routes_.getLength()) {
        std::string const id = table_.id() + "/Entry/" + std::to_string(entries_.size() + 1);
        entries_.push_back(std::make_unique<Entry>(table_.inventory(), id, *this, entries_.size()));
    }
}

TipprmiSequence<IpRoutingTableClient::IpRoute> RoutingTable::routes(bool onlyUp) const
{
    using Client = IpRoutingTableClient;
    TipprmiSequence<Client::IpRoute> told;
    for (Route const& configured : routes_) {
        bool const isInEffect = isUp(configured);
        if (onlyUp && !isInEffect) {
            continue;
        }
        Client::IpRoute route{};
        route.destination = configured.destination;
        route.netmask = configured.netmask;
        route.address3 = configured.gateway;
        route.flags = static_cast<unsigned short>((isInEffect ? Client::RTF__UP : 0) | Client::RTF__GATEWAY |
                                                  Client::RTF__STATIC);
        told.push_back(route);
    }
    return told;
}

// The address itself where an interface leads to it, unless a route is more exact.
bool RoutingTable::findNexthop(Address const& address, Address& nexthop) const
{
    int longest = prefix_(address, true);
    bool isFound = longest >= 0;
    if (isFound) {
        nexthop = address;
    }
    for (Route const& route : routes_) {
        std::uint32_t const mask = addressNumber(route.netmask);
        int const length = std::popcount(mask);
        bool const isFor = (addressNumber(address) & mask) == addressNumber(route.destination);
        if (isFor && length > longest && isUp(route)) {
            longest = length;
            nexthop = route.gateway;
            isFound = true;
        }
    }
    return isFound;
}

} // namespace trs::sim
