#include "broker/objects/StubTable.h"

#include <string>

namespace trs {

class StubTable::Stub final : public TreflectObjectStub {
public:
    Stub(TipprmiOID oid, TreflectORB const* orb, bool isInterned)
        : TreflectObjectStub(std::move(oid), orb), isInterned_(isInterned)
    {
    }
    // Every stub is one of these.
    static Stub& of(TreflectObjectStub& stub) { return static_cast<Stub&>(stub); }

    using TreflectObjectStub::dropReference;
    using TreflectObjectStub::leadTo;
    bool isInterned() const { return isInterned_; }

private:
    bool const isInterned_;
};

// Never destroyed: proxies and objects with static storage need it to the end.
StubTable& StubTable::instance()
{
    static StubTable& table = *new StubTable;
    return table;
}

TreflectStubRef StubTable::unbound()
{
    static TreflectStubRef const& stub = *new TreflectStubRef(new Stub(TipprmiOID(""), nullptr, false));
    return stub;
}

TreflectStubRef StubTable::makePrivate(TreflectServerObject& server, TipprmiOID const& oid)
{
    auto* const stub = new Stub(oid, nullptr, false);
    stub->leadTo(&server);
    return TreflectStubRef(stub);
}

bool StubTable::isOfIdentifier(TreflectObjectStub& stub) { return Stub::of(stub).isInterned(); }

void StubTable::orphan(TreflectObjectStub& stub) { Stub::of(stub).leadTo(nullptr); }

TreflectObjectStub& StubTable::findOrMake(Key const& key)
{
    auto const found = stubs_.find(key);
    if (found != stubs_.end()) {
        return *found->second;
    }
    auto* const stub = new Stub(TipprmiOID(std::string(key.id), NamespaceId(key.space)), key.orb, true);
    stubs_.emplace(Key{key.orb, key.space, stub->oid().getIdString()}, stub);
    return *stub;
}

TreflectStubRef StubTable::find(TreflectORB const* orb, NamespaceId space, std::string_view id)
{
    std::lock_guard const lock(mutex_);
    return TreflectStubRef(&findOrMake({orb, space.value(), id}));
}

std::optional<TreflectStubRef> StubTable::findActive(NamespaceId space, std::string_view id)
{
    std::lock_guard const lock(mutex_);
    auto const found = stubs_.find(Key{nullptr, space.value(), id});
    if (found == stubs_.end() || found->second->localServer() == nullptr) {
        return std::nullopt;
    }
    return TreflectStubRef(found->second);
}

bool StubTable::activate(TreflectServerObject& server, TipprmiOID const& oid)
{
    std::lock_guard const lock(mutex_);
    TreflectObjectStub& stub = findOrMake({nullptr, oid.getNamespace().value(), oid.getIdString()});
    if (TreflectServerObject* const present = stub.localServer()) {
        return present == &server;
    }
    stub.retain(); // the registry's own reference
    Stub::of(stub).leadTo(&server);
    return true;
}

void StubTable::deactivate(TreflectServerObject const& server, TipprmiOID const& oid)
{
    TreflectObjectStub* stub = nullptr;
    {
        std::lock_guard const lock(mutex_);
        auto const found = stubs_.find(Key{nullptr, oid.getNamespace().value(), oid.getIdString()});
        if (found == stubs_.end() || found->second->localServer() != &server) {
            return;
        }
        stub = found->second;
        orphan(*stub);
    }
    stub->release();
}

void StubTable::release(TreflectObjectStub& stub)
{
    {
        std::lock_guard const lock(mutex_);
        if (!Stub::of(stub).dropReference()) {
            return;
        }
        if (Stub::of(stub).isInterned()) {
            stubs_.erase(Key{stub.orb(), stub.oid().getNamespace().value(), stub.oid().getIdString()});
        }
    }
    delete &stub;
}

} // namespace trs

TreflectObjectStub::~TreflectObjectStub() = default;

TreflectServerObject* TreflectObjectStub::getLocalServer() const { return localServer(); }

void TreflectObjectStub::release()
{
    std::size_t count = references_.load(std::memory_order_relaxed);
    while (count > 1) {
        if (references_.compare_exchange_weak(count, count - 1, std::memory_order_release, std::memory_order_relaxed)) {
            return;
        }
    }
    trs::StubTable::instance().release(*this);
}
