// Observation of operations: who is told, and of what.
#pragma once

#include "platform/TipprmiForward.h"
#include "platform/TipprmiOID.h"

#include <string>

class TreflectObject;

// Is told of every execution of the operations that it was registered on (TreflectOperation::postObserve).
//
// It is called on a thread of the broker's, under the run permission, one call at a time. A class derived from it
// calls withdraw() first thing in its destructor.
class TreflectObserver {
public:
    TreflectObserver(TipprmiOID const& oid, TreflectObject const* source, std::string const& name);
    TreflectObserver(TreflectObserver const&) = delete;
    TreflectObserver& operator=(TreflectObserver const&) = delete;
    virtual ~TreflectObserver();

    // An observed operation was executed. The answer is logged when it is false and has no other effect.
    virtual bool detected() = 0;
    // The same with what the operation was called with: the result, if it has one, then every argument in
    // declaration order; empty when the object's code did not say. Calls detected() unless overridden.
    virtual bool notify(TipprmiSequence<TipprmiAny> const& parameters);

    // Ends all registrations. When it returns, no notification is running (save the one that called it) and none
    // will come. Gives the run permission back while it waits for a running one.
    void withdraw();

    TipprmiOID const& oid() const { return oid_; }
    std::string const& name() const { return name_; }

private:
    TipprmiOID const oid_;
    std::string const name_;
};
