#include "clients/transmission/Aal5PmClient.h"

#include "rmi/Call.h"

Aal5PmClient::ClientSpecificMetaObject Aal5PmClient::oMeta;
TreflectMetaObject* Aal5PmClient::staticMeta() { return oMeta.completed(); }

Aal5PmClient::~Aal5PmClient() = default;
