// The way of this process's calls to its own objects while a tap wants to see them.
#pragma once

#include "platform/TreflectObjectStub.h"

#include <atomic>

namespace trs {

class Peer;

// They go over a connection within the process then, so that they meet whatever a call over a connection may meet.
class TappedRoad {
public:
    // `own` is the peer that this process is to itself; null, as at first: objects here are reached directly.
    static void open(Peer* own) { own_.store(own, std::memory_order_release); }

    // The peer that a call of an object here goes by. Null when it reaches the object directly: while nothing is
    // tapped, under UntappedCalls, and by a proxy that was made from a pointer to the object.
    static Peer* by(TreflectObjectStub& stub)
    {
        Peer* const own = own_.load(std::memory_order_acquire);
        return own == nullptr || isDirect(stub) ? nullptr : own;
    }

private:
    static bool isDirect(TreflectObjectStub& stub);

    static std::atomic<Peer*> own_;
};

} // namespace trs
