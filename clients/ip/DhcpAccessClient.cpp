#include "clients/ip/DhcpAccessClient.h"

#include "rmi/Call.h"

DhcpAccessClient::ClientSpecificMetaObject DhcpAccessClient::oMeta;
TreflectMetaObject* DhcpAccessClient::staticMeta() { return oMeta.completed(); }

std::string const DhcpAccessClient::NAME = "DhcpAccess";

ResponseInfo<SetClient> DhcpAccessClient::createDhcpConfigurationEntry(DhcpConfigurationInfo const& entry) const
{
    return call<&DhcpAccessClient::createDhcpConfigurationEntry>(*this, entry);
}
ResponseInfo<SetClient> DhcpAccessClient::deleteDhcpConfigurationEntry(TipprmiArray<short, 4> const& address) const
{
    return call<&DhcpAccessClient::deleteDhcpConfigurationEntry>(*this, address);
}
ResponseInfo<GetClient> DhcpAccessClient::getDhcpConfiguration(TipprmiSequence<DhcpConfigurationInfo>& entries) const
{
    return call<&DhcpAccessClient::getDhcpConfiguration>(*this, entries);
}
void DhcpAccessClient::GetPublicIpAddress(TipprmiArray<short, 4>& address) const
{
    call<&DhcpAccessClient::GetPublicIpAddress>(*this, address);
}
void DhcpAccessClient::GetPublicIpMask(TipprmiArray<short, 4>& mask) const
{
    call<&DhcpAccessClient::GetPublicIpMask>(*this, mask);
}
void DhcpAccessClient::NotifyConfigChangeAndInit() const { call<&DhcpAccessClient::NotifyConfigChangeAndInit>(*this); }
