#include "clients/ip/DiffServToVlanMapClient.h"

#include "rmi/Call.h"

DiffServToVlanMapClient::ClientSpecificMetaObject DiffServToVlanMapClient::oMeta;
TreflectMetaObject* DiffServToVlanMapClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> DiffServToVlanMapClient::getEnabled(bool& enabled) const
{
    return call<&DiffServToVlanMapClient::getEnabled>(*this, enabled);
}
ResponseInfo<SetClient> DiffServToVlanMapClient::setEnabled(bool const& enabled) const
{
    return call<&DiffServToVlanMapClient::setEnabled>(*this, enabled);
}
ResponseInfo<GetClient> DiffServToVlanMapClient::getVlanMapSequence(TipprmiSequence<DsvmEntryClient>& entries) const
{
    return call<&DiffServToVlanMapClient::getVlanMapSequence>(*this, entries);
}
ResponseInfo<SetClient>
DiffServToVlanMapClient::setVlanMapSequence(TipprmiSequence<DsvmEntryClient::values> const& entries) const
{
    return call<&DiffServToVlanMapClient::setVlanMapSequence>(*this, entries);
}
