#include "clients/ip/VlanIfNetFabricClient.h"

#include "rmi/Call.h"

VlanIfNetFabricClient::ClientSpecificMetaObject VlanIfNetFabricClient::oMeta;
TreflectMetaObject* VlanIfNetFabricClient::staticMeta() { return oMeta.completed(); }

VlanIfNetClient VlanIfNetFabricClient::retrieve(std::string const& index) const
{
    return call<&VlanIfNetFabricClient::retrieve>(*this, index);
}
VlanIfNetClient VlanIfNetFabricClient::retrieveFirst(std::string& index) const
{
    return call<&VlanIfNetFabricClient::retrieveFirst>(*this, index);
}
VlanIfNetClient VlanIfNetFabricClient::retrieveNext(std::string const& index, std::string& nextIndex) const
{
    return call<&VlanIfNetFabricClient::retrieveNext>(*this, index, nextIndex);
}
TipprmiSequence<VlanIfNetClient> VlanIfNetFabricClient::retrieveAll() const
{
    return call<&VlanIfNetFabricClient::retrieveAll>(*this);
}
VlanIfNetClient VlanIfNetFabricClient::create(std::string const& index,
                                              VlanIfNetClient::VlanIfNetCreateParams const& params) const
{
    return call<&VlanIfNetFabricClient::create>(*this, index, params);
}
VlanIfNetClient VlanIfNetFabricClient::createWithIndex(std::string& index,
                                                       VlanIfNetClient::VlanIfNetCreateParams const& params) const
{
    return call<&VlanIfNetFabricClient::createWithIndex>(*this, index, params);
}
void VlanIfNetFabricClient::destroy(std::string const& index) const
{
    call<&VlanIfNetFabricClient::destroy>(*this, index);
}
void VlanIfNetFabricClient::destroyByInterface(VlanIfNetClient const& vlan) const
{
    call<&VlanIfNetFabricClient::destroyByInterface>(*this, vlan);
}
