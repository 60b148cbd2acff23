// The root of every proxy.
#pragma once

#include "platform/TipprmiOID.h"
#include "platform/TreflectObjectStub.h"

class TipprmiObjectSkeleton;
class TipprmiStream;
class TreflectORB;

// Names a broker among those that this process knows; 0 is its own.
class TreflectOrbId {
public:
    explicit constexpr TreflectOrbId(unsigned long value) : value_(value) {}
    constexpr unsigned long value() const { return value_; }
    friend constexpr bool operator==(TreflectOrbId, TreflectOrbId) = default;

private:
    unsigned long value_;
};

// A value handle on one object: its identifier and the stub that leads to it. Making, copying, assigning and
// destroying one makes no remote call and costs a reference count.
class TipprmiObjectClient {
public:
    // Bound to an object of this process. A null pointer gives an unbound proxy.
    explicit TipprmiObjectClient(TipprmiObjectSkeleton const* skeleton);
    // Bound to the object of that identifier, here or in a process that this one has as a peer.
    explicit TipprmiObjectClient(TipprmiOID const& oid);
    // Unbound.
    TipprmiObjectClient();
    TipprmiObjectClient(TipprmiObjectClient const&) = default;
    TipprmiObjectClient& operator=(TipprmiObjectClient const&) = default;
    virtual ~TipprmiObjectClient();

    // Sends a prepared request to one broker and waits for its reply. False when no reply arrived, or one that
    // says that the call was not carried out; the framework records why.
    virtual bool forwardMsg(TreflectOrbId const& orb, bool flag, TipprmiStream& request, TipprmiStream& reply) const;
    // The same to the object's own broker, or to the object directly when it lives here.
    virtual bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                          TipprmiStream& reply) const;
    // Rebinds the proxy to the object of that identifier at that broker and no other; null: wherever it is found.
    virtual void connect(TreflectORB const* orb, TipprmiOID const& oid);
    virtual void connect(TipprmiObjectSkeleton* skeleton);
    // The object, when it lives in this process; else null.
    virtual TipprmiObjectSkeleton* getServer() const;

    // Whether the proxy reaches its object now. Asks the object's process when that is another one.
    bool isConnected() const;
    TipprmiOID const& getOID() const { return stub_->oid(); }
    // The stub; never null: an unbound proxy has one that reaches nothing.
    TreflectObjectStub* getStub_() const { return stub_.get(); }

    // Starts a request: writes the header into `request` and returns the stream for the in-arguments.
    TipprmiStream& prepareRequestStream_(bool flag, unsigned long classId, unsigned long opIndex,
                                         TipprmiStream& request) const;
    // Places the reader of a delivered reply at the result and returns the stream to read it from.
    TipprmiStream& prepareResponseStream_(bool flag, TipprmiStream& reply) const;

    // Whether both designate the same object.
    bool isSameObject(TipprmiObjectClient const& other) const;

private:
    friend TipprmiStream& operator>>(TipprmiStream&, TipprmiObjectClient&);

    TreflectStubRef stub_;
};

// The object reference encoding: the namespace (4 bytes) and the identifier as a string. Reading rebinds the proxy
// to the referenced object, relative to the broker that the stream came from; a failed read leaves it as it was.
TipprmiStream& operator<<(TipprmiStream& stream, TipprmiObjectClient const& object);
TipprmiStream& operator>>(TipprmiStream& stream, TipprmiObjectClient& object);
