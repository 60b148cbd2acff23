#include "clients/transmission/Aal5ProfileClient.h"

#include "rmi/Call.h"

Aal5ProfileClient::ClientSpecificMetaObject Aal5ProfileClient::oMeta;
TreflectMetaObject* Aal5ProfileClient::staticMeta() { return oMeta.completed(); }

std::string Aal5ProfileClient::getNmaLabel() const { return call<&Aal5ProfileClient::getNmaLabel>(*this); }
ResponseInfo<SetClient> Aal5ProfileClient::setNmaLabel(std::string const& label) const
{
    return call<&Aal5ProfileClient::setNmaLabel>(*this, label);
}
long Aal5ProfileClient::getAalMode() const { return call<&Aal5ProfileClient::getAalMode>(*this); }
long Aal5ProfileClient::getSscsType() const { return call<&Aal5ProfileClient::getSscsType>(*this); }
long Aal5ProfileClient::getMaxCpcsPduOctetNumberForward() const
{
    return call<&Aal5ProfileClient::getMaxCpcsPduOctetNumberForward>(*this);
}
long Aal5ProfileClient::getMaxCpcsPduOctetNumberBackward() const
{
    return call<&Aal5ProfileClient::getMaxCpcsPduOctetNumberBackward>(*this);
}
unsigned long Aal5ProfileClient::internalAddReference() const
{
    return call<&Aal5ProfileClient::internalAddReference>(*this);
}
unsigned long Aal5ProfileClient::internalReleaseReference() const
{
    return call<&Aal5ProfileClient::internalReleaseReference>(*this);
}
