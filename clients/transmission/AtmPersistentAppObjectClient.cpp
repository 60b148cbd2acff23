#include "clients/transmission/AtmPersistentAppObjectClient.h"

#include "rmi/Call.h"

AtmPersistentAppObjectClient::ClientSpecificMetaObject AtmPersistentAppObjectClient::oMeta;
TreflectMetaObject* AtmPersistentAppObjectClient::staticMeta() { return oMeta.completed(); }

bool AtmPersistentAppObjectClient::isInitialised() const
{
    return call<&AtmPersistentAppObjectClient::isInitialised>(*this);
}
bool AtmPersistentAppObjectClient::isEmpty() const { return call<&AtmPersistentAppObjectClient::isEmpty>(*this); }
