// The process's tree of registered objects.
#pragma once

#include "platform/TreflectObject.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace trs {

// Which objects were registered as children of which, and under what name. An object is known by its identifier, has
// at most one parent and is never below itself.
class NameTree {
public:
    static NameTree& instance();

    bool add(TreflectObject const& parent, std::string const& name, TreflectObject const& child);
    bool remove(TreflectObject const& parent, std::string const& name);

    std::string relName(TipprmiOID const& oid);
    std::string absName(TipprmiOID const& oid);
    TreflectObject parent(TipprmiOID const& oid);
    TreflectObject child(TipprmiOID const& oid, std::string const& name);
    std::vector<TreflectObject> children(TipprmiOID const& oid);

private:
    using Key = std::pair<unsigned long, std::string>;
    struct Placed {
        TreflectObject parent;
        std::string name;
    };

    NameTree() = default;
    static Key keyOf(TipprmiOID const& oid) { return {oid.getNamespace().value(), oid.getIdString()}; }
    Placed const* find(TipprmiOID const& oid) const;

    std::mutex mutex_;
    std::map<Key, Placed> placed_;
    std::map<Key, std::map<std::string, TreflectObject>> children_;
};

} // namespace trs
