#include "broker/objects/RunPermission.h"

#include "broker/machine/Processors.h"

#include <mutex>

namespace {

constinit std::mutex token;

struct ThreadState {
    bool isHandler;
    bool hasPermission;
    bool enteredWithoutPermission; // so that leaving gives it back
    bool isExecuting;              // within a RunPermissionScope that took the permission
    bool isWaiting;                // and that was told
    unsigned depth;
    trs::PermissionWaits* waits;
};
thread_local ThreadState self{};

void take()
{
    // Most objects' code is shorter than putting a thread to sleep and waking it up. With one processor, waiting
    // awake would only keep the holder from ending.
    if (trs::processorCount() > 1) {
        for (int attempt = 0; attempt < 100; ++attempt) {
            if (token.try_lock()) {
                self.hasPermission = true;
                return;
            }
            trs::relaxProcessor();
        }
    }
    token.lock();
    self.hasPermission = true;
}

void giveBack()
{
    self.hasPermission = false;
    token.unlock();
}

void endWait()
{
    if (self.isWaiting) [[unlikely]] {
        self.isWaiting = false;
        self.waits->end();
    }
}

} // namespace

trs::RunPermissionScope::RunPermissionScope() : isTaker_(!self.hasPermission)
{
    if (isTaker_) {
        take();
        self.isExecuting = true;
    }
}

trs::RunPermissionScope::~RunPermissionScope()
{
    if (isTaker_) {
        self.isExecuting = false;
        endWait(); // an object may forget to take back what it gave
        if (self.hasPermission) {
            giveBack();
        }
    }
}

trs::HandlerWait::HandlerWait()
{
    if (self.waits != nullptr) {
        self.waits->begin();
    }
}

trs::HandlerWait::~HandlerWait()
{
    if (self.waits != nullptr) {
        self.waits->end();
    }
}

bool TreflectORB::isHandlerThread() { return self.isHandler; }

bool TreflectORB::hasRunPermission() { return self.hasPermission; }

void TreflectORB::getRunPermission()
{
    if (!self.hasPermission) {
        endWait();
        take();
    }
}

void TreflectORB::releaseRunPermission()
{
    if (self.hasPermission) {
        giveBack();
        if (self.isExecuting && self.waits != nullptr) {
            self.isWaiting = true;
            self.waits->begin();
        }
    }
}

void TreflectORB::enterHandlerState(bool)
{
    if (self.depth++ == 0) {
        self.enteredWithoutPermission = !self.hasPermission;
        getRunPermission();
    }
}

void TreflectORB::leaveHandlerState(bool)
{
    if (self.depth != 0 && --self.depth == 0 && self.enteredWithoutPermission) {
        releaseRunPermission();
    }
}

void trs::becomeHandlerThread() { self.isHandler = true; }
void trs::watchPermission(PermissionWaits* waits) { self.waits = waits; }
