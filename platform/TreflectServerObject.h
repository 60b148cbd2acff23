// The server's side of a managed object: what proxies in the same process and the broker call.
#pragma once

#include "platform/TipprmiForward.h"
#include "platform/TreflectObjectStub.h"

#include <atomic>
#include <cstdint>

// An object that lives in this process and answers calls. Only TipprmiObjectSkeleton derives from it.
//
// Its code runs under the broker's run permission, on whichever thread brought the call, so it needs no lock of
// its own. It is reachable by proxies made from a pointer to it at once, and by its identifier, from here and from
// other processes, from activate() until deactivate() or its destruction. Whoever changes what a call sees (adds
// operations, destroys the object) while calls may arrive holds the run permission (TreflectHandlerState).
class TreflectServerObject {
public:
    // One interface that an object's class implements, and the interface it extends; constant data.
    struct Interface {
        std::uint32_t classId;
        Interface const* base;
    };

    TreflectServerObject(TreflectServerObject const&) = delete;
    TreflectServerObject& operator=(TreflectServerObject const&) = delete;
    virtual ~TreflectServerObject();

    TipprmiOID const& getOID() const { return stub_->oid(); }
    // The stub that every proxy made from a pointer to this object shares.
    TreflectObjectStub* stub() const { return stub_.get(); }

    // Makes the object reachable by its identifier. False, with a log line, when another object of this process
    // has the identifier. Handing out a reference to the object activates it too.
    bool activate();
    void deactivate();

    // Whether the operations of interface `classId` may be called as virtual functions of this object.
    bool implements(std::uint32_t classId) const
    {
        for (Interface const* interface = interface_; interface != nullptr; interface = interface->base) {
            if (interface->classId == classId) {
                return true;
            }
        }
        return false;
    }

    // Whether any operation of this object has an observer; cheap, for the call road.
    bool isObserved() const { return observed_.load(std::memory_order_relaxed); }
    // For the broker, which knows.
    void setObserved(bool isObserved) { observed_.store(isObserved, std::memory_order_relaxed); }
    // Whether this operation has an observer, so that its parameter list is worth building.
    bool isObserved(unsigned long classId, unsigned long opIndex) const;
    // Tells the observers of an operation, here and in other processes, that it was executed. `parameters` holds
    // the result, if there is one, and then every argument in declaration order.
    void notifyObservers(unsigned long classId, unsigned long opIndex,
                         TipprmiSequence<TipprmiAny> const& parameters) const;

protected:
    // An object with an identifier of its own making, unique on this machine.
    TreflectServerObject();
    explicit TreflectServerObject(TipprmiOID const& oid);

    // Set by a skeleton whose operations are virtual functions.
    void setInterface(Interface const* interface) { interface_ = interface; }

private:
    TreflectStubRef stub_;
    Interface const* interface_ = nullptr;
    std::atomic<bool> observed_ = false;
};
