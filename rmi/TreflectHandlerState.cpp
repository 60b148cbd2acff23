#include "rmi/TreflectHandlerState.h"

#include "platform/TreflectORB.h"

TreflectHandlerState::TreflectHandlerState() : isHandler(TreflectORB::isHandlerThread())
{
    if (!isHandler) {
        TreflectORB::enterHandlerState(true);
        return;
    }
    hadRunPermission = TreflectORB::hasRunPermission();
    if (!hadRunPermission) {
        TreflectORB::getRunPermission();
    }
}

TreflectHandlerState::~TreflectHandlerState()
{
    if (!isHandler) {
        TreflectORB::leaveHandlerState(true);
    } else if (!hadRunPermission) {
        TreflectORB::releaseRunPermission();
    }
}
