#include "clients/ip/Ip3IfNetClient.h"

#include "rmi/Call.h"

Ip3IfNetClient::ClientSpecificMetaObject Ip3IfNetClient::oMeta;
TreflectMetaObject* Ip3IfNetClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> Ip3IfNetClient::getMlp3Endpoint(Mlp3EndpointClient& endpoint) const
{
    return call<&Ip3IfNetClient::getMlp3Endpoint>(*this, endpoint);
}
