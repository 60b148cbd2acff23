#include "clients/ip/IpRouteEntryClient.h"

#include "rmi/Call.h"

IpRouteEntryClient::ClientSpecificMetaObject IpRouteEntryClient::oMeta;
TreflectMetaObject* IpRouteEntryClient::staticMeta() { return oMeta.completed(); }

void IpRouteEntryClient::getRouteCfg(Cfg& cfg) const { call<&IpRouteEntryClient::getRouteCfg>(*this, cfg); }
unsigned long IpRouteEntryClient::getDestination() const { return call<&IpRouteEntryClient::getDestination>(*this); }
unsigned long IpRouteEntryClient::getNetmask() const { return call<&IpRouteEntryClient::getNetmask>(*this); }
unsigned long IpRouteEntryClient::getGateway() const { return call<&IpRouteEntryClient::getGateway>(*this); }
long IpRouteEntryClient::getNetworkType() const { return call<&IpRouteEntryClient::getNetworkType>(*this); }
