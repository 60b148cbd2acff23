#include "clients/ip/IpSecClient.h"

#include "rmi/Call.h"

IpSecClient::ClientSpecificMetaObject IpSecClient::oMeta;
TreflectMetaObject* IpSecClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> IpSecClient::getIpSlkId(std::string& id) const
{
    return call<&IpSecClient::getIpSlkId>(*this, id);
}
ResponseInfo<GetClient> IpSecClient::getIpSecEnabled(bool& enabled) const
{
    return call<&IpSecClient::getIpSecEnabled>(*this, enabled);
}
ResponseInfo<SetClient> IpSecClient::setIpSecEnabled(bool const& enabled) const
{
    return call<&IpSecClient::setIpSecEnabled>(*this, enabled);
}
