// Scopes of the run permission; TreflectORB has its primitives.
#pragma once

#include "platform/TreflectORB.h"

namespace trs {

// Is told when a thread that runs objects gives the run permission back in the middle of one, to wait for others.
class PermissionWaits {
public:
    virtual void begin() = 0; // without the permission
    virtual void end() = 0;   // before it is taken again

protected:
    PermissionWaits() = default;
    ~PermissionWaits() = default;
};

// Has the run permission from construction to destruction; takes it only from a thread that lacks it.
class RunPermissionScope {
public:
    RunPermissionScope();
    RunPermissionScope(RunPermissionScope const&) = delete;
    RunPermissionScope& operator=(RunPermissionScope const&) = delete;
    ~RunPermissionScope();

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

// For as long as the calling thread waits without the run permission for what other threads of its kind do.
class HandlerWait {
public:
    HandlerWait();
    HandlerWait(HandlerWait const&) = delete;
    HandlerWait& operator=(HandlerWait const&) = delete;
    ~HandlerWait();
};

// Makes the calling thread one of the broker's, to its end.
void becomeHandlerThread();
// Has the waiting of the calling thread told, to the thread's end.
void watchPermission(PermissionWaits* waits);

} // namespace trs
