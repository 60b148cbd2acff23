// All stubs of the process.
#pragma once

#include "platform/TreflectObjectStub.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace trs {

// Interns the stubs of identifiers, one per broker that a proxy may be connected to, and is the registry of active
// objects: an object is active while the stub of its identifier (with no broker) leads to it.
//
// A stub's count reaches 0 only under the table's lock, so that whoever finds a stub in the table may take it.
class StubTable {
public:
    static StubTable& instance();

    // The stub of an identifier, made when there is none. `orb` null: wherever the object is found.
    TreflectStubRef find(TreflectORB const* orb, NamespaceId space, std::string_view id);
    TreflectStubRef find(TreflectORB const* orb, TipprmiOID const& oid)
    {
        return find(orb, oid.getNamespace(), oid.getIdString());
    }
    // The stub of no object.
    static TreflectStubRef unbound();
    // A stub of its own for an object: no other object and no identifier leads to it.
    static TreflectStubRef makePrivate(TreflectServerObject& server, TipprmiOID const& oid);

    // The stub of an active object.
    std::optional<TreflectStubRef> findActive(NamespaceId space, std::string_view id);
    // False when another object has the identifier.
    bool activate(TreflectServerObject& server, TipprmiOID const& oid);
    void deactivate(TreflectServerObject const& server, TipprmiOID const& oid);
    // Whether the stub is that of an identifier, and none of makePrivate().
    static bool isOfIdentifier(TreflectObjectStub& stub);
    // Ends what leads to an object: it is being destroyed.
    static void orphan(TreflectObjectStub& stub);
    // Calls `act` with the active object of that identifier, if there is one; it stays alive meanwhile.
    template <class Act>
    void withActive(TipprmiOID const& oid, Act&& act)
    {
        std::lock_guard const lock(mutex_);
        auto const found = stubs_.find(Key{nullptr, oid.getNamespace().value(), oid.getIdString()});
        if (found != stubs_.end()) {
            if (TreflectServerObject* const server = found->second->localServer()) {
                act(*server);
            }
        }
    }
    // The same with every active object.
    template <class Act>
    void forEachActive(Act&& act)
    {
        std::lock_guard const lock(mutex_);
        for (auto const& [key, stub] : stubs_) {
            if (TreflectServerObject* const server = stub->localServer()) {
                act(*server);
            }
        }
    }

    // Drops a reference that may be the last one.
    void release(TreflectObjectStub& stub);

private:
    class Stub;
    // Views the identifier that the stub itself holds.
    struct Key {
        TreflectORB const* orb;
        unsigned long space;
        std::string_view id;
        friend bool operator==(Key const&, Key const&) = default;
    };
    struct Hash {
        std::size_t operator()(Key const& key) const
        {
            return std::hash<std::string_view>()(key.id) ^ std::hash<TreflectORB const*>()(key.orb) ^ key.space;
        }
    };

    StubTable() = default;
    TreflectObjectStub& findOrMake(Key const& key);

    std::mutex mutex_;
    std::unordered_map<Key, TreflectObjectStub*, Hash> stubs_;
};

} // namespace trs
