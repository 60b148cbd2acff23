// What may stand between this process's objects and those who call them, in programs that test others: to log calls,
// and to answer them badly (Broker::setTap, Broker::setLocalTap).
#pragma once

#include "broker/framing/Message.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace trs {

// One call. Its functions come in this order, on handler threads and without the run permission. What takes its time
// says so by delay() and isAnswered(), and holds no thread meanwhile.
class TappedCall {
public:
    // Sends bytes over the call's connection. False when it is lost.
    using Send = std::function<bool(unsigned char const* bytes, std::size_t length)>;

    virtual ~TappedCall() = default;
    // How long the call is to wait now: asked before isExecuted() and before answer(). The connection's next requests
    // are answered meanwhile; when serving ends nothing waits any longer.
    virtual std::chrono::milliseconds delay() { return {}; }
    // Whether the object is asked. If not, the reply has the status that `status` is set to, and for ReplyStatus::done
    // what is appended to `reply`.
    virtual bool isExecuted(TipprmiStream& reply, ReplyStatus& status) = 0;
    // Sends the finished reply. False ends the connection.
    virtual bool answer(TipprmiStream const& reply, Send const& send) = 0;
    // Whether answer() has sent all of it. If not, it is called again, after the delay; nothing else goes over the
    // connection until then.
    virtual bool isAnswered() { return true; }

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
