// Ip3IfNetClient: an IP interface over a multilink PPP endpoint, made by IpNodeClient::createIp3IfNet() and handed out
// by it and by getIp3IfNetSequence().
#pragma once

#include "clients/ip/IfNetClient.h"
#include "clients/transmission/Mlp3EndpointClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiSequence.h"

// Leads to the endpoint that carries the interface.
class Ip3IfNetClient : public IfNetClient {
public:
    using Parent = IfNetClient;
    using IfNetClient::IfNetClient;

    using ClientSpecificMetaObject = ProxyMetaObject<Ip3IfNetClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // What IpNodeClient::createIp3IfNet() makes an interface from. Proxies only send it.
    struct Cfg {
        TipprmiSequence<IfNetClient::IpAddrInfo> ipAddrSequence;
        Mlp3EndpointClient mlp3Endpoint; // carries the interface
    };

    // Reads the endpoint that carries the interface; it counts only when the status is OK.
    virtual ResponseInfo<GetClient> getMlp3Endpoint(Mlp3EndpointClient& endpoint) const;
};

template <>
struct RecordFields<Ip3IfNetClient::Cfg>
    : Fields<&Ip3IfNetClient::Cfg::ipAddrSequence, &Ip3IfNetClient::Cfg::mlp3Endpoint> {};

template <>
inline constexpr bool isSentOnly<Ip3IfNetClient::Cfg> = true;

template <>
struct Operations<Ip3IfNetClient>
    : OperationList<Ip3IfNetClient, 0x433ebb6d, Operation<0, &Ip3IfNetClient::getMlp3Endpoint>> {};
