#include "clients/services/HwmModuleClient.h"

#include "rmi/Call.h"

HwmModuleClient::ClientSpecificMetaObject HwmModuleClient::oMeta;
TreflectMetaObject* HwmModuleClient::staticMeta() { return oMeta.completed(); }

HwmModuleClient::~HwmModuleClient() = default;
