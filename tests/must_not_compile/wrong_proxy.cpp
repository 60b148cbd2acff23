// expect: cannot convert|no viable conversion
#include "clients/transmission/AtmVcCrossConnectionClient.h"
#include "clients/transmission/VirtualChannelTrailTpClient.h"

void use(VirtualChannelConnectionTpClient const& point, AtmVcCrossConnectionClient const& connection)
{
    point.internalSetCrossConnection(connection);
#ifndef CONTROL
    point.internalConnectChannelTrail(connection);
#endif
}
