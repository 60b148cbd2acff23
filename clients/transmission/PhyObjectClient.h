// PhyObjectClient: a physical object of the transport unit; handed out as one of the classes that derive from it.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// The base of transmission units, interfaces and ports, of Ethernet links and of the multilink objects. An
// application object without operations of its own.
class PhyObjectClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;
    ~PhyObjectClient() override;

    using ClientSpecificMetaObject = ProxyMetaObject<PhyObjectClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();
};

template <>
struct Operations<PhyObjectClient> : OperationList<PhyObjectClient, 0xf0667457> {};
