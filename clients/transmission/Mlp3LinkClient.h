// Mlp3LinkClient: a member link of a multilink PPP endpoint, handed out by Mlp3EndpointClient::getSupportingLinks().
#pragma once

#include "clients/services/ConditionClient.h"
#include "clients/transmission/Mlp3HdlcClient.h"
#include "clients/transmission/Mlp3LinkDescriptorClient.h"
#include "clients/transmission/PdhUnitClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// Tells the PDH unit, the HDLC channel, the PPP options and the fault condition of the link. Results are an unbound
// proxy or false when the call fails.
class Mlp3LinkClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<Mlp3LinkClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the PDH unit that the link belongs to.
    virtual PdhUnitClient getUnit() const;
    // Reads the HDLC channel of the link.
    virtual Mlp3HdlcClient getHdlc() const;
    // Reads the object that tells the PPP options of the link.
    virtual Mlp3LinkDescriptorClient getLinkDescriptor() const;
    // Reads whether an HDLC channel is the link's.
    virtual bool hasHdlc(Mlp3HdlcClient const& hdlc) const;
    // Reads the fault condition of the link control protocol (LCP) being down.
    virtual ConditionClient getLcpDown() const;
};

template <>
struct Operations<Mlp3LinkClient>
    : OperationList<Mlp3LinkClient, 0xc1d50880, Operation<0, &Mlp3LinkClient::getUnit>,
                    Operation<1, &Mlp3LinkClient::getHdlc>, Operation<2, &Mlp3LinkClient::getLinkDescriptor>,
                    Operation<3, &Mlp3LinkClient::hasHdlc>, Operation<4, &Mlp3LinkClient::getLcpDown>> {};
