#include "clients/transmission/PhyObjectClient.h"

#include "rmi/Call.h"

PhyObjectClient::ClientSpecificMetaObject PhyObjectClient::oMeta;
TreflectMetaObject* PhyObjectClient::staticMeta() { return oMeta.completed(); }

PhyObjectClient::~PhyObjectClient() = default;
