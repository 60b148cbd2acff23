#include "clients/ip/VlanIfNetClient.h"

#include "rmi/Call.h"

VlanIfNetClient::ClientSpecificMetaObject VlanIfNetClient::oMeta;
TreflectMetaObject* VlanIfNetClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<SetClient> VlanIfNetClient::setVlanId(unsigned short const& vlanId) const
{
    return call<&VlanIfNetClient::setVlanId>(*this, vlanId);
}
ResponseInfo<GetClient> VlanIfNetClient::getVlanId(unsigned short& vlanId) const
{
    return call<&VlanIfNetClient::getVlanId>(*this, vlanId);
}
ResponseInfo<SetClient> VlanIfNetClient::setCommittedInfoRate(unsigned long const& rate) const
{
    return call<&VlanIfNetClient::setCommittedInfoRate>(*this, rate);
}
ResponseInfo<GetClient> VlanIfNetClient::getCommittedInfoRate(unsigned long& rate) const
{
    return call<&VlanIfNetClient::getCommittedInfoRate>(*this, rate);
}
ResponseInfo<SetClient> VlanIfNetClient::setSIR(unsigned long const& sir) const
{
    return call<&VlanIfNetClient::setSIR>(*this, sir);
}
ResponseInfo<GetClient> VlanIfNetClient::getSIR(unsigned long& sir) const
{
    return call<&VlanIfNetClient::getSIR>(*this, sir);
}
ResponseInfo<SetClient> VlanIfNetClient::setVlanShapingEnabled(bool const& enabled) const
{
    return call<&VlanIfNetClient::setVlanShapingEnabled>(*this, enabled);
}
ResponseInfo<GetClient> VlanIfNetClient::getVlanShapingEnabled(bool& enabled) const
{
    return call<&VlanIfNetClient::getVlanShapingEnabled>(*this, enabled);
}
ResponseInfo<SetClient> VlanIfNetClient::setIpAddressInfo(IpAddressInfo const& info) const
{
    return call<&VlanIfNetClient::setIpAddressInfo>(*this, info);
}
ResponseInfo<GetClient> VlanIfNetClient::getIpAddressInfo(IpAddressInfo& info) const
{
    return call<&VlanIfNetClient::getIpAddressInfo>(*this, info);
}
ResponseInfo<SetClient> VlanIfNetClient::setShaperBurstSize(unsigned long const& size) const
{
    return call<&VlanIfNetClient::setShaperBurstSize>(*this, size);
}
ResponseInfo<GetClient> VlanIfNetClient::getShaperBurstSize(unsigned long& size) const
{
    return call<&VlanIfNetClient::getShaperBurstSize>(*this, size);
}
ResponseInfo<GetClient> VlanIfNetClient::getIfNetBfdIpIub(IfNetBfdIpIubClient& bfd) const
{
    return call<&VlanIfNetClient::getIfNetBfdIpIub>(*this, bfd);
}
ResponseInfo<SetClient> VlanIfNetClient::setQosEnabled(bool const& enabled) const
{
    return call<&VlanIfNetClient::setQosEnabled>(*this, enabled);
}
ResponseInfo<GetClient> VlanIfNetClient::getQosEnabled(bool& enabled) const
{
    return call<&VlanIfNetClient::getQosEnabled>(*this, enabled);
}
ResponseInfo<SetClient> VlanIfNetClient::setCesopsn(bool const& enabled) const
{
    return call<&VlanIfNetClient::setCesopsn>(*this, enabled);
}
ResponseInfo<GetClient> VlanIfNetClient::getCesopsn(bool& enabled) const
{
    return call<&VlanIfNetClient::getCesopsn>(*this, enabled);
}
ResponseInfo<GetClient> VlanIfNetClient::getVlanInstanceId(unsigned long& instanceId) const
{
    return call<&VlanIfNetClient::getVlanInstanceId>(*this, instanceId);
}
