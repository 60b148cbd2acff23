#include "clients/ip/IfNetClient.h"

#include "rmi/Call.h"

IfNetClient::ClientSpecificMetaObject IfNetClient::oMeta;
TreflectMetaObject* IfNetClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> IfNetClient::getUnitName(std::string& name) const
{
    return call<&IfNetClient::getUnitName>(*this, name);
}
ResponseInfo<GetClient> IfNetClient::getUnitNumber(short& number) const
{
    return call<&IfNetClient::getUnitNumber>(*this, number);
}
ResponseInfo<GetClient> IfNetClient::getMtu(long& mtu) const { return call<&IfNetClient::getMtu>(*this, mtu); }
ResponseInfo<SetClient> IfNetClient::setMtu(long const& mtu) const { return call<&IfNetClient::setMtu>(*this, mtu); }
ResponseInfo<GetClient> IfNetClient::getInternalMtu(long& mtu) const
{
    return call<&IfNetClient::getInternalMtu>(*this, mtu);
}
ResponseInfo<SetClient> IfNetClient::setInternalMtu(long const& mtu) const
{
    return call<&IfNetClient::setInternalMtu>(*this, mtu);
}
ResponseInfo<GetClient> IfNetClient::getFlags(unsigned short& flags) const
{
    return call<&IfNetClient::getFlags>(*this, flags);
}
ResponseInfo<SetClient> IfNetClient::setFlags(unsigned short const& flags) const
{
    return call<&IfNetClient::setFlags>(*this, flags);
}
ResponseInfo<GetClient> IfNetClient::getDiscardPrivate(bool& discard) const
{
    return call<&IfNetClient::getDiscardPrivate>(*this, discard);
}
ResponseInfo<SetClient> IfNetClient::setDiscardPrivate(bool const& discard) const
{
    return call<&IfNetClient::setDiscardPrivate>(*this, discard);
}
ResponseInfo<GetClient> IfNetClient::getDiscardPublic(bool& discard) const
{
    return call<&IfNetClient::getDiscardPublic>(*this, discard);
}
ResponseInfo<SetClient> IfNetClient::setDiscardPublic(bool const& discard) const
{
    return call<&IfNetClient::setDiscardPublic>(*this, discard);
}
ResponseInfo<GetClient> IfNetClient::getIpAddrSequence(TipprmiSequence<IpAddrInfo>& addresses) const
{
    return call<&IfNetClient::getIpAddrSequence>(*this, addresses);
}
ResponseInfo<SetClient> IfNetClient::setIpAddrSequence(TipprmiSequence<IpAddrInfo> const& addresses) const
{
    return call<&IfNetClient::setIpAddrSequence>(*this, addresses);
}
ResponseInfo<SetClient> IfNetClient::setPrivateIpAddr(IpAddrInfo const& address) const
{
    return call<&IfNetClient::setPrivateIpAddr>(*this, address);
}
ResponseInfo<GetClient> IfNetClient::getPrivateIpAddr(IpAddrInfo& address) const
{
    return call<&IfNetClient::getPrivateIpAddr>(*this, address);
}
ResponseInfo<SetClient> IfNetClient::setPublicIpAddr(IpAddrInfo const& address) const
{
    return call<&IfNetClient::setPublicIpAddr>(*this, address);
}
ResponseInfo<GetClient> IfNetClient::getPublicIpAddr(IpAddrInfo& address) const
{
    return call<&IfNetClient::getPublicIpAddr>(*this, address);
}
ResponseInfo<GetClient> IfNetClient::getVokIpForSctp(TipprmiArray<short, 4>& address) const
{
    return call<&IfNetClient::getVokIpForSctp>(*this, address);
}
ConditionClient IfNetClient::getDownEgress() const { return call<&IfNetClient::getDownEgress>(*this); }
ConditionClient IfNetClient::getDownIngress() const { return call<&IfNetClient::getDownIngress>(*this); }
ConditionClient IfNetClient::getDownEgress2() const { return call<&IfNetClient::getDownEgress2>(*this); }
ConditionClient IfNetClient::getDownIngress2() const { return call<&IfNetClient::getDownIngress2>(*this); }
ConditionClient IfNetClient::getDownBfdCommon() const { return call<&IfNetClient::getDownBfdCommon>(*this); }
