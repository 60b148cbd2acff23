#include "clients/ip/VlanMapClient.h"

#include "rmi/Call.h"

VlanMapClient::ClientSpecificMetaObject VlanMapClient::oMeta;
TreflectMetaObject* VlanMapClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<SetClient> VlanMapClient::setVlanMap(TipprmiArray<VlanMapEntryType, 7> const& map) const
{
    return call<&VlanMapClient::setVlanMap>(*this, map);
}
TipprmiArray<VlanMapClient::VlanMapEntryType, 7> VlanMapClient::getVlanMap() const
{
    return call<&VlanMapClient::getVlanMap>(*this);
}
