// AtmPersistentAppObjectClient: an ATM application object with an initialisation step of its own; handed out as one of
// the classes that derive from it.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// The base of virtual channel trail termination points and of Aal5PmClient. Results are false when the call fails.
class AtmPersistentAppObjectClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AtmPersistentAppObjectClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads whether the object has been initialised; the classes that derive from this one have an operation for that.
    virtual bool isInitialised() const;
    // Reads whether the object is empty; what counts as empty, the server decides.
    virtual bool isEmpty() const;
};

template <>
struct Operations<AtmPersistentAppObjectClient>
    : OperationList<AtmPersistentAppObjectClient, 0xcf9f51a1,
                    Operation<0, &AtmPersistentAppObjectClient::isInitialised>,
                    Operation<1, &AtmPersistentAppObjectClient::isEmpty>> {};
