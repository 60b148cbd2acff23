#include "clients/ip/BfdIpIubClient.h"

#include "rmi/Call.h"

BfdIpIubClient::ClientSpecificMetaObject BfdIpIubClient::oMeta;
TreflectMetaObject* BfdIpIubClient::staticMeta() { return oMeta.completed(); }

std::string const BfdIpIubClient::BFD_IP_IUB_OID = "BfdIpIub";

ResponseInfo<GetClient> BfdIpIubClient::getBfdActivation(bool& activated) const
{
    return call<&BfdIpIubClient::getBfdActivation>(*this, activated);
}
ResponseInfo<SetClient> BfdIpIubClient::setBfdActivation(bool const& activated) const
{
    return call<&BfdIpIubClient::setBfdActivation>(*this, activated);
}
ResponseInfo<GetClient> BfdIpIubClient::getBfdDestAddress(TipprmiArray<short, 4>& address) const
{
    return call<&BfdIpIubClient::getBfdDestAddress>(*this, address);
}
ResponseInfo<SetClient> BfdIpIubClient::setBfdDestAddress(TipprmiArray<short, 4> const& address) const
{
    return call<&BfdIpIubClient::setBfdDestAddress>(*this, address);
}
ResponseInfo<GetClient> BfdIpIubClient::getBfdAdminUp(bool& up) const
{
    return call<&BfdIpIubClient::getBfdAdminUp>(*this, up);
}
ResponseInfo<SetClient> BfdIpIubClient::setBfdAdminUp(bool const& up) const
{
    return call<&BfdIpIubClient::setBfdAdminUp>(*this, up);
}
ResponseInfo<GetClient> BfdIpIubClient::getBfdTimer(BfdTimer& timer) const
{
    return call<&BfdIpIubClient::getBfdTimer>(*this, timer);
}
ResponseInfo<SetClient> BfdIpIubClient::setBfdTimer(BfdTimer const& timer) const
{
    return call<&BfdIpIubClient::setBfdTimer>(*this, timer);
}
ConditionClient BfdIpIubClient::getDownEgress() const { return call<&BfdIpIubClient::getDownEgress>(*this); }
ConditionClient BfdIpIubClient::getDownIngress() const { return call<&BfdIpIubClient::getDownIngress>(*this); }
