#include "clients/transmission/VirtualConnectionTpClient.h"

#include "rmi/Call.h"

VirtualConnectionTpClient::ClientSpecificMetaObject VirtualConnectionTpClient::oMeta;
TreflectMetaObject* VirtualConnectionTpClient::staticMeta() { return oMeta.completed(); }

long VirtualConnectionTpClient::getIdentifier() const { return call<&VirtualConnectionTpClient::getIdentifier>(*this); }
AtmTrafficDescriptorClient VirtualConnectionTpClient::getTrafficDescriptor() const
{
    return call<&VirtualConnectionTpClient::getTrafficDescriptor>(*this);
}
bool VirtualConnectionTpClient::getSegmentEndPoint() const
{
    return call<&VirtualConnectionTpClient::getSegmentEndPoint>(*this);
}
bool VirtualConnectionTpClient::isCrossConnected() const
{
    return call<&VirtualConnectionTpClient::isCrossConnected>(*this);
}
bool VirtualConnectionTpClient::isTerminatedByTrail() const
{
    return call<&VirtualConnectionTpClient::isTerminatedByTrail>(*this);
}
bool VirtualConnectionTpClient::setTrafficDescriptor(AtmTrafficDescriptorClient const& descriptor) const
{
    return call<&VirtualConnectionTpClient::setTrafficDescriptor>(*this, descriptor);
}
bool VirtualConnectionTpClient::internalSetTrafficDescriptor(AtmTrafficDescriptorClient const& descriptor) const
{
    return call<&VirtualConnectionTpClient::internalSetTrafficDescriptor>(*this, descriptor);
}
bool VirtualConnectionTpClient::internalSetSegmentEndPoint(bool const& endPoint) const
{
    return call<&VirtualConnectionTpClient::internalSetSegmentEndPoint>(*this, endPoint);
}
