// What broker/Async.h stands on; of no use without it.
#pragma once

#include "broker/CallFailure.h"
#include "platform/TipprmiStream.h"
#include "platform/TreflectObjectStub.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace trs {

// One asynchronous call, of any operation. Owned by shared pointers, of which the broker keeps one until it ends.
class AsyncCall : public std::enable_shared_from_this<AsyncCall> {
public:
    AsyncCall(AsyncCall const&) = delete;
    AsyncCall& operator=(AsyncCall const&) = delete;
    virtual ~AsyncCall();

    // Where the in-arguments are appended before start().
    TipprmiStream& request();
    // Sends the request, from any thread. The call does not end before it returns, unless on the broker's own thread.
    void start(std::chrono::milliseconds time);
    // Ends the call soon if it has not ended, from any thread.
    void cancel();

    // Whether the calling thread is the one that carries asynchronous calls: who waits there for one waits for ever.
    static bool isOnItsThread();
    // Calls it on that thread, soon; or within, when there can be none.
    static void later(std::function<void()> act);

protected:
    AsyncCall(TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex);

    // The call's one end, on a thread of the broker's: read() and then complete() without a failure, or complete() with
    // one. `reply` is placed at the result.
    virtual void read(TipprmiStream& reply) = 0;
    virtual void complete(CallFailure const* failure) = 0;

private:
    class Progress;
    std::unique_ptr<Progress> const progress_;
};

} // namespace trs
