// Aal5PmClient: the AAL5 performance object of a trail, handed out by Aal5VirtualChannelTrailTpClient::getAal5Pm().
#pragma once

#include "clients/transmission/AtmPersistentAppObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// An application object without operations of its own; its performance service counts errors of AAL5.
class Aal5PmClient : public AtmPersistentAppObjectClient {
public:
    using Parent = AtmPersistentAppObjectClient;
    using AtmPersistentAppObjectClient::AtmPersistentAppObjectClient;
    ~Aal5PmClient() override;

    using ClientSpecificMetaObject = ProxyMetaObject<Aal5PmClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The counters: invalid fields of the convergence sublayer (CS), CRC violations and expirations of the reassembly
    // timer.
    static constexpr int SUM_OF_INVALID_CS_FIELD_ERRORS = 1;
    static constexpr int CRC_VIOLATIONS = 2;
    static constexpr int REASSEMBLY_TIMER_EXPIRATIONS = 3;
};

template <>
struct Operations<Aal5PmClient> : OperationList<Aal5PmClient, 0x0b7c09e6> {};
