// Mlp3EndpointClient: a multilink PPP endpoint, the bundle of its links, handed out by
// Ip3IfNetClient::getMlp3Endpoint().
#pragma once

#include "clients/services/ConditionClient.h"
#include "clients/transmission/Mlp3LinkClient.h"
#include "clients/transmission/PdhUnitClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/TipprmiSequence.h"

// Tells the PDH unit, the member links and the fault conditions of the bundle. Results are an unbound proxy, an empty
// sequence or false when the call fails.
class Mlp3EndpointClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<Mlp3EndpointClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The packet and session counters of the endpoint's performance service.
    static constexpr int PM_IDENT_P3_RX_PACKETS = 1;
    static constexpr int PM_IDENT_P3_DROP_PACKETS = 2;
    static constexpr int PM_IDENT_P3_ERROR_PACKETS = 3;
    static constexpr int PM_IDENT_P3_SESSION_UAS = 4;
    // The least number of links that an endpoint needs; the proxy does not check it.
    static constexpr int MIN_NUM_SUPPORTING_LINKS = 1;

    // Reads the PDH unit that the endpoint belongs to.
    virtual PdhUnitClient getUnit() const;
    // Reads the member links of the bundle; there may be none.
    virtual TipprmiSequence<Mlp3LinkClient> getSupportingLinks() const;
    // Reads whether a link is a member of the bundle.
    virtual bool hasLink(Mlp3LinkClient const& link) const;
    // Reads the fault condition of the PPP session being down.
    virtual ConditionClient getSessionDown() const;
    // Reads the fault condition of the IP control protocol (IPCP) being down.
    virtual ConditionClient getIpcpDown() const;
};

template <>
struct Operations<Mlp3EndpointClient>
    : OperationList<Mlp3EndpointClient, 0x3634bf45, Operation<0, &Mlp3EndpointClient::getUnit>,
                    Operation<1, &Mlp3EndpointClient::getSupportingLinks>, Operation<2, &Mlp3EndpointClient::hasLink>,
                    Operation<3, &Mlp3EndpointClient::getSessionDown>, Operation<4, &Mlp3EndpointClient::getIpcpDown>> {
};
