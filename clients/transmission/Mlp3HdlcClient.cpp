#include "clients/transmission/Mlp3HdlcClient.h"

#include "rmi/Call.h"

Mlp3HdlcClient::ClientSpecificMetaObject Mlp3HdlcClient::oMeta;
TreflectMetaObject* Mlp3HdlcClient::staticMeta() { return oMeta.completed(); }

PdhUnitClient Mlp3HdlcClient::getUnit() const { return call<&Mlp3HdlcClient::getUnit>(*this); }
bool Mlp3HdlcClient::getAcFieldCompressionOn() const { return call<&Mlp3HdlcClient::getAcFieldCompressionOn>(*this); }
TransmissionIfClient Mlp3HdlcClient::getTransmissionIf() const
{
    return call<&Mlp3HdlcClient::getTransmissionIf>(*this);
}
