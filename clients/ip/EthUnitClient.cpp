#include "clients/ip/EthUnitClient.h"

#include "rmi/Call.h"

EthUnitClient::ClientSpecificMetaObject EthUnitClient::oMeta;
TreflectMetaObject* EthUnitClient::staticMeta() { return oMeta.completed(); }

EthUnitClient::~EthUnitClient() = default;
