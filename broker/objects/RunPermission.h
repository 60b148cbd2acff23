// Scopes of the run permission; TreflectORB has its primitives.
#pragma once

#include "platform/TreflectORB.h"

namespace trs {

// Has the run permission from construction to destruction; takes it only from a thread that lacks it.
class RunPermissionScope {
public:
    RunPermissionScope() : isTaker_(!TreflectORB::hasRunPermission())
    {
        if (isTaker_) {
            TreflectORB::getRunPermission();
        }
    }
    RunPermissionScope(RunPermissionScope const&) = delete;
    RunPermissionScope& operator=(RunPermissionScope const&) = delete;
    ~RunPermissionScope()
    {
        if (isTaker_) {
            TreflectORB::releaseRunPermission();
        }
    }

private:
    bool const isTaker_;
};

// Gives the run permission back while the thread waits for others, if it has it, and takes it again at the end.
class RunPermissionPause {
public:
    RunPermissionPause() : isGiver_(TreflectORB::hasRunPermission())
    {
        if (isGiver_) {
            TreflectORB::releaseRunPermission();
        }
    }
    RunPermissionPause(RunPermissionPause const&) = delete;
    RunPermissionPause& operator=(RunPermissionPause const&) = delete;
    ~RunPermissionPause()
    {
        if (isGiver_) {
            TreflectORB::getRunPermission();
        }
    }

private:
    bool const isGiver_;
};

// Makes the calling thread one of the broker's, to its end.
void becomeHandlerThread();

} // namespace trs
