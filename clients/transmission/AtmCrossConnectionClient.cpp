#include "clients/transmission/AtmCrossConnectionClient.h"

#include "rmi/Call.h"

AtmCrossConnectionClient::ClientSpecificMetaObject AtmCrossConnectionClient::oMeta;
TreflectMetaObject* AtmCrossConnectionClient::staticMeta() { return oMeta.completed(); }

long AtmCrossConnectionClient::getRecoveryType() const
{
    return call<&AtmCrossConnectionClient::getRecoveryType>(*this);
}
bool AtmCrossConnectionClient::getRedline() const { return call<&AtmCrossConnectionClient::getRedline>(*this); }
std::string AtmCrossConnectionClient::getUserLabel() const
{
    return call<&AtmCrossConnectionClient::getUserLabel>(*this);
}
unsigned long AtmCrossConnectionClient::internalGetXcId() const
{
    return call<&AtmCrossConnectionClient::internalGetXcId>(*this);
}
ResponseInfo<SetClient> AtmCrossConnectionClient::setUserLabel(std::string const& label) const
{
    return call<&AtmCrossConnectionClient::setUserLabel>(*this, label);
}
void AtmCrossConnectionClient::internalSetXcId(unsigned long const& id) const
{
    call<&AtmCrossConnectionClient::internalSetXcId>(*this, id);
}
