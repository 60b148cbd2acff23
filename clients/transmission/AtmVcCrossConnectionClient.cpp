#include "clients/transmission/AtmVcCrossConnectionClient.h"

#include "rmi/Call.h"

AtmVcCrossConnectionClient::ClientSpecificMetaObject AtmVcCrossConnectionClient::oMeta;
TreflectMetaObject* AtmVcCrossConnectionClient::staticMeta() { return oMeta.completed(); }

VirtualChannelConnectionTpClient AtmVcCrossConnectionClient::getTerminationA() const
{
    return call<&AtmVcCrossConnectionClient::getTerminationA>(*this);
}
VirtualChannelConnectionTpClient AtmVcCrossConnectionClient::getTerminationB() const
{
    return call<&AtmVcCrossConnectionClient::getTerminationB>(*this);
}
