// The framework's part of every call.
#pragma once

#include "platform/TipprmiForward.h"
#include "platform/TreflectObjectStub.h"

class TipprmiStream;

// What the framework asks of a call: to run it here, or to read its result from a reply.
class ClientCallHookBaseV {
public:
    virtual ~ClientCallHookBaseV();
    // Runs the operation on the in-process server object.
    virtual void call() const = 0;
    // Appends the arguments to a parameter list.
    virtual void generateParams(TipprmiSequence<TipprmiAny>& list) const = 0;
    // Appends the result, if there is one, and then the arguments.
    virtual void insertResult(TipprmiSequence<TipprmiAny>& list) const;
    // Writes the current values of all arguments.
    virtual void generateRequestStream(TipprmiStream& stream) const = 0;
    // Reads the result, if there is one, from a reply.
    virtual void evaluateResponse(TipprmiStream& stream) const;

protected:
    ClientCallHookBaseV() = default;
    ClientCallHookBaseV(ClientCallHookBaseV const&) = default;
    ClientCallHookBaseV& operator=(ClientCallHookBaseV const&) = default;
};

// Performs a call. With `server`: runs hook.call() in this process. Without: carries the call to the object behind
// `stub` (in this process through its dispatch(), else to its process), and lets the hook read the result and `out`
// the out-arguments. When no reply can be had, nothing is evaluated; the framework records why.
void ClientCallHelper(ClientCallHookBaseV const& hook, InParamHook const& in, OutParamHook const& out,
                      TreflectObjectStub& stub, TreflectServerObject* server, unsigned long classId,
                      unsigned long opIndex, bool flag);

// The parameter list of an operation without arguments: adds nothing.
void generateParamSeq(TipprmiSequence<TipprmiAny>& list);
