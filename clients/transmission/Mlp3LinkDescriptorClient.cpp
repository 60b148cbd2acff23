#include "clients/transmission/Mlp3LinkDescriptorClient.h"

#include "rmi/Call.h"

Mlp3LinkDescriptorClient::ClientSpecificMetaObject Mlp3LinkDescriptorClient::oMeta;
TreflectMetaObject* Mlp3LinkDescriptorClient::staticMeta() { return oMeta.completed(); }

short Mlp3LinkDescriptorClient::getMruSize() const { return call<&Mlp3LinkDescriptorClient::getMruSize>(*this); }
short Mlp3LinkDescriptorClient::getAuthentication() const
{
    return call<&Mlp3LinkDescriptorClient::getAuthentication>(*this);
}
short Mlp3LinkDescriptorClient::getFcsFieldLength() const
{
    return call<&Mlp3LinkDescriptorClient::getFcsFieldLength>(*this);
}
bool Mlp3LinkDescriptorClient::getMruSizeNegotiationOn() const
{
    return call<&Mlp3LinkDescriptorClient::getMruSizeNegotiationOn>(*this);
}
bool Mlp3LinkDescriptorClient::getLongSequenceNrOn() const
{
    return call<&Mlp3LinkDescriptorClient::getLongSequenceNrOn>(*this);
}
bool Mlp3LinkDescriptorClient::getLinkQualityControlOn() const
{
    return call<&Mlp3LinkDescriptorClient::getLinkQualityControlOn>(*this);
}
bool Mlp3LinkDescriptorClient::getMagicNumberOn() const
{
    return call<&Mlp3LinkDescriptorClient::getMagicNumberOn>(*this);
}
bool Mlp3LinkDescriptorClient::getProtocolFieldCompressionOn() const
{
    return call<&Mlp3LinkDescriptorClient::getProtocolFieldCompressionOn>(*this);
}
bool Mlp3LinkDescriptorClient::getEndPointDiscriminatorOn() const
{
    return call<&Mlp3LinkDescriptorClient::getEndPointDiscriminatorOn>(*this);
}
bool Mlp3LinkDescriptorClient::getSendIdentificationPacketsOn() const
{
    return call<&Mlp3LinkDescriptorClient::getSendIdentificationPacketsOn>(*this);
}
