// What may stand between this process's objects and those who call them, in programs that test others: to log calls,
// and to answer them badly (Broker::setTap, Broker::setLocalTap).
#pragma once

#include "broker/framing/Message.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace trs {

// One call. Its functions come in this order, once each, on the connection's handler thread
// and without the run permission; they may take their time.
class TappedCall {
public:
    // Sends bytes over the call's connection. False when it is lost.
    using Send = std::function<bool(unsigned char const* bytes, std::size_t length)>;

    virtual ~TappedCall() = default;
    // Whether the object is asked. If not, the reply has the status that `status` is set to, and for ReplyStatus::done
    // what is appended to `reply`.
    virtual bool isExecuted(TipprmiStream& reply, ReplyStatus& status) = 0;
    // Sends the finished reply. False ends the connection.
    virtual bool answer(TipprmiStream const& reply, Send const& send) = 0;

protected:
    TappedCall() = default;
    TappedCall(TappedCall const&) = default;
    TappedCall& operator=(TappedCall const&) = default;
};

class ServerTap {
public:
    virtual ~ServerTap() = default;
    // A call begins. `request` is positioned at the first in-argument and left so; both arguments outlive the result.
    virtual std::unique_ptr<TappedCall> begin(ObjectAddress const& address, TipprmiStream const& request) = 0;

protected:
    ServerTap() = default;
    ServerTap(ServerTap const&) = default;
    ServerTap& operator=(ServerTap const&) = default;
};

// From construction to destruction the current thread's calls within the process reach the objects directly, whatever
// is tapped: for code that belongs to the objects. The broker runs objects so for tapped calls. Scopes nest.
class UntappedCalls {
public:
    UntappedCalls();
    UntappedCalls(UntappedCalls const&) = delete;
    UntappedCalls& operator=(UntappedCalls const&) = delete;
    ~UntappedCalls();
    // Whether the thread is in such a scope.
    static bool isOn();
};

} // namespace trs
