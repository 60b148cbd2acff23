#include "clients/ip/IpRoutingTableClient.h"

#include "rmi/Call.h"

IpRoutingTableClient::ClientSpecificMetaObject IpRoutingTableClient::oMeta;
TreflectMetaObject* IpRoutingTableClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> IpRoutingTableClient::getIpRouteEntries(TipprmiSequence<IpRouteEntryClient>& entries) const
{
    return call<&IpRoutingTableClient::getIpRouteEntries>(*this, entries);
}
ResponseInfo<GetClient> IpRoutingTableClient::getIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg>& routes) const
{
    return call<&IpRoutingTableClient::getIpRouteEntriesCfg>(*this, routes);
}
ResponseInfo<SetClient>
IpRoutingTableClient::applyIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg> const& routes) const
{
    return call<&IpRoutingTableClient::applyIpRouteEntriesCfg>(*this, routes);
}
ResponseInfo<SetClient>
IpRoutingTableClient::mergeIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg> const& routes) const
{
    return call<&IpRoutingTableClient::mergeIpRouteEntriesCfg>(*this, routes);
}
ResponseInfo<SetClient>
IpRoutingTableClient::destroyIpRouteEntriesCfg(TipprmiSequence<IpRouteEntryCfg> const& routes) const
{
    return call<&IpRoutingTableClient::destroyIpRouteEntriesCfg>(*this, routes);
}
ResponseInfo<GetClient> IpRoutingTableClient::getIpRouteSequence(TipprmiSequence<IpRoute>& routes) const
{
    return call<&IpRoutingTableClient::getIpRouteSequence>(*this, routes);
}
ResponseInfo<GetClient> IpRoutingTableClient::getIpForwardingSequence(TipprmiSequence<IpRoute>& routes) const
{
    return call<&IpRoutingTableClient::getIpForwardingSequence>(*this, routes);
}
ResponseInfo<GetClient> IpRoutingTableClient::getNexthop(TipprmiArray<short, 4> const& address, bool const& flag,
                                                         TipprmiArray<short, 4>& nexthop) const
{
    return call<&IpRoutingTableClient::getNexthop>(*this, address, flag, nexthop);
}
ResponseInfo<SetClient> IpRoutingTableClient::storeNexthop(TipprmiArray<short, 4> const& nexthop) const
{
    return call<&IpRoutingTableClient::storeNexthop>(*this, nexthop);
}
ResponseInfo<GetClient> IpRoutingTableClient::getNetworkType(long& networkType) const
{
    return call<&IpRoutingTableClient::getNetworkType>(*this, networkType);
}
ResponseInfo<RunClient> IpRoutingTableClient::createIpRoute(IpRouteEntryCfg const& route) const
{
    return call<&IpRoutingTableClient::createIpRoute>(*this, route);
}
ResponseInfo<RunClient> IpRoutingTableClient::deleteIpRoute(IpRouteEntryCfg const& route) const
{
    return call<&IpRoutingTableClient::deleteIpRoute>(*this, route);
}
ResponseInfo<SetClient> IpRoutingTableClient::storeIpForwardingSequence(TipprmiSequence<IpRoute> const& routes) const
{
    return call<&IpRoutingTableClient::storeIpForwardingSequence>(*this, routes);
}
