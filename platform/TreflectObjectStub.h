// What connects proxies to their server object.
#pragma once

#include "platform/TipprmiOID.h"

#include <atomic>
#include <cstddef>
#include <utility>

class TreflectORB;
class TreflectServerObject;

// The meeting point of proxies of one object in this process, and of the object itself when it lives here: an object
// has one stub for the proxies made from a pointer to it, and one, while it is active, for those made from its
// identifier. Shared and counted; made and found by the broker. A stub outlives its object: proxies then fail their
// calls.
class TreflectObjectStub {
public:
    TreflectObjectStub(TreflectObjectStub const&) = delete;
    TreflectObjectStub& operator=(TreflectObjectStub const&) = delete;
    virtual ~TreflectObjectStub();

    // The object, when it lives in the calling process; else null.
    virtual TreflectServerObject* getLocalServer() const;

    TreflectServerObject* localServer() const { return server_.load(std::memory_order_acquire); }
    TipprmiOID const& oid() const { return oid_; }
    // The broker that a proxy was explicitly connected to; null: wherever the object is found.
    TreflectORB const* orb() const { return orb_; }
    // The broker that last answered for the object; null when none has yet.
    TreflectORB const* home() const { return home_.load(std::memory_order_acquire); }
    void setHome(TreflectORB const* home) { home_.store(home, std::memory_order_release); }

    void retain() { references_.fetch_add(1, std::memory_order_relaxed); }
    void release();

protected:
    TreflectObjectStub(TipprmiOID oid, TreflectORB const* orb) : oid_(std::move(oid)), orb_(orb) {}

    // The object that calls reach; null: none.
    void leadTo(TreflectServerObject* server) { server_.store(server, std::memory_order_release); }
    // Gives a reference back, whichever it is. Whether it was the last one.
    bool dropReference() { return references_.fetch_sub(1, std::memory_order_acq_rel) == 1; }

private:
    std::atomic<TreflectServerObject*> server_ = nullptr;
    std::atomic<std::size_t> references_ = 0;
    TipprmiOID const oid_;
    TreflectORB const* const orb_;
    std::atomic<TreflectORB const*> home_ = nullptr;
};

// A counted reference to a stub; never null.
class TreflectStubRef {
public:
    explicit TreflectStubRef(TreflectObjectStub* stub) : stub_(stub) { stub_->retain(); }
    TreflectStubRef(TreflectStubRef const& other) : TreflectStubRef(other.stub_) {}
    TreflectStubRef& operator=(TreflectStubRef const& other)
    {
        TreflectStubRef copy(other);
        std::swap(stub_, copy.stub_);
        return *this;
    }
    ~TreflectStubRef() { stub_->release(); }

    TreflectObjectStub* get() const { return stub_; }
    TreflectObjectStub* operator->() const { return stub_; }

private:
    TreflectObjectStub* stub_;
};
