#include "clients/transmission/Mlp3EndpointClient.h"

#include "rmi/Call.h"

Mlp3EndpointClient::ClientSpecificMetaObject Mlp3EndpointClient::oMeta;
TreflectMetaObject* Mlp3EndpointClient::staticMeta() { return oMeta.completed(); }

PdhUnitClient Mlp3EndpointClient::getUnit() const { return call<&Mlp3EndpointClient::getUnit>(*this); }
TipprmiSequence<Mlp3LinkClient> Mlp3EndpointClient::getSupportingLinks() const
{
    return call<&Mlp3EndpointClient::getSupportingLinks>(*this);
}
bool Mlp3EndpointClient::hasLink(Mlp3LinkClient const& link) const
{
    return call<&Mlp3EndpointClient::hasLink>(*this, link);
}
ConditionClient Mlp3EndpointClient::getSessionDown() const { return call<&Mlp3EndpointClient::getSessionDown>(*this); }
ConditionClient Mlp3EndpointClient::getIpcpDown() const { return call<&Mlp3EndpointClient::getIpcpDown>(*this); }
