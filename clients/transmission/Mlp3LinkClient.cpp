#include "clients/transmission/Mlp3LinkClient.h"

#include "rmi/Call.h"

Mlp3LinkClient::ClientSpecificMetaObject Mlp3LinkClient::oMeta;
TreflectMetaObject* Mlp3LinkClient::staticMeta() { return oMeta.completed(); }

PdhUnitClient Mlp3LinkClient::getUnit() const { return call<&Mlp3LinkClient::getUnit>(*this); }
Mlp3HdlcClient Mlp3LinkClient::getHdlc() const { return call<&Mlp3LinkClient::getHdlc>(*this); }
Mlp3LinkDescriptorClient Mlp3LinkClient::getLinkDescriptor() const
{
    return call<&Mlp3LinkClient::getLinkDescriptor>(*this);
}
bool Mlp3LinkClient::hasHdlc(Mlp3HdlcClient const& hdlc) const { return call<&Mlp3LinkClient::hasHdlc>(*this, hdlc); }
ConditionClient Mlp3LinkClient::getLcpDown() const { return call<&Mlp3LinkClient::getLcpDown>(*this); }
