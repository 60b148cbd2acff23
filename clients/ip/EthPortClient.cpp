#include "clients/ip/EthPortClient.h"

#include "rmi/Call.h"

EthPortClient::ClientSpecificMetaObject EthPortClient::oMeta;
TreflectMetaObject* EthPortClient::staticMeta() { return oMeta.completed(); }

EthUnitClient EthPortClient::getUnit() const { return call<&EthPortClient::getUnit>(*this); }
