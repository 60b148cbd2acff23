#include "clients/ip/IfNetBfdIpIubClient.h"

#include "rmi/Call.h"

IfNetBfdIpIubClient::ClientSpecificMetaObject IfNetBfdIpIubClient::oMeta;
TreflectMetaObject* IfNetBfdIpIubClient::staticMeta() { return oMeta.completed(); }

std::string const IfNetBfdIpIubClient::IFNET_BFD_IP_IUB_OID = "IfNetBfdIpIub";

ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdSourceUdpPort(unsigned short& port) const
{
    return call<&IfNetBfdIpIubClient::getBfdSourceUdpPort>(*this, port);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdSourceUdpPort(unsigned short const& port) const
{
    return call<&IfNetBfdIpIubClient::setBfdSourceUdpPort>(*this, port);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdTypeUdpPort(BfdTypePort& type) const
{
    return call<&IfNetBfdIpIubClient::getBfdTypeUdpPort>(*this, type);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdTypeUdpPort(BfdTypePort const& type) const
{
    return call<&IfNetBfdIpIubClient::setBfdTypeUdpPort>(*this, type);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdActivation(bool& activated) const
{
    return call<&IfNetBfdIpIubClient::getBfdActivation>(*this, activated);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdActivation(bool const& activated) const
{
    return call<&IfNetBfdIpIubClient::setBfdActivation>(*this, activated);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdDestAddress(TipprmiArray<short, 4>& address) const
{
    return call<&IfNetBfdIpIubClient::getBfdDestAddress>(*this, address);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdDestAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&IfNetBfdIpIubClient::setBfdDestAddress>(*this, address);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdAdminUp(bool& up) const
{
    return call<&IfNetBfdIpIubClient::getBfdAdminUp>(*this, up);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdAdminUp(bool const& up) const
{
    return call<&IfNetBfdIpIubClient::setBfdAdminUp>(*this, up);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdActivation2(bool& activated) const
{
    return call<&IfNetBfdIpIubClient::getBfdActivation2>(*this, activated);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdActivation2(bool const& activated) const
{
    return call<&IfNetBfdIpIubClient::setBfdActivation2>(*this, activated);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdDestAddress2(TipprmiArray<short, 4>& address) const
{
    return call<&IfNetBfdIpIubClient::getBfdDestAddress2>(*this, address);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdDestAddress2(TipprmiArray<short, 4> const& address) const
{
    return call<&IfNetBfdIpIubClient::setBfdDestAddress2>(*this, address);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdAdminUp2(bool& up) const
{
    return call<&IfNetBfdIpIubClient::getBfdAdminUp2>(*this, up);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdAdminUp2(bool const& up) const
{
    return call<&IfNetBfdIpIubClient::setBfdAdminUp2>(*this, up);
}
ResponseInfo<GetClient> IfNetBfdIpIubClient::getBfdTimer(BfdTimer& timer) const
{
    return call<&IfNetBfdIpIubClient::getBfdTimer>(*this, timer);
}
ResponseInfo<SetClient> IfNetBfdIpIubClient::setBfdTimer(BfdTimer const& timer) const
{
    return call<&IfNetBfdIpIubClient::setBfdTimer>(*this, timer);
}
