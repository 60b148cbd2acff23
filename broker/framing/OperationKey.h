// One operation of one object, as a key.
#pragma once

#include "platform/TipprmiOID.h"

#include <cstdint>
#include <string_view>
#include <tuple>

namespace trs {

struct OperationView {
    unsigned long space;
    std::string_view id;
    std::uint32_t classId;
    std::uint32_t opIndex;
};

struct OperationKey {
    OperationKey(TipprmiOID object, unsigned long ofClass, unsigned long index)
        : oid(std::move(object)), classId(static_cast<std::uint32_t>(ofClass)),
          opIndex(static_cast<std::uint32_t>(index))
    {
    }
    OperationView view() const { return {oid.getNamespace().value(), oid.getIdString(), classId, opIndex}; }

    TipprmiOID oid;
    std::uint32_t classId;
    std::uint32_t opIndex;
};

// Orders keys, those of one object side by side, and finds them by views.
struct OperationOrder {
    using is_transparent = void;
    static OperationView const& view(OperationView const& view) { return view; }
    static OperationView view(OperationKey const& key) { return key.view(); }
    template <class Left, class Right>
    bool operator()(Left const& left, Right const& right) const
    {
        OperationView const a = view(left);
        OperationView const b = view(right);
        return std::tie(a.space, a.id, a.classId, a.opIndex) < std::tie(b.space, b.id, b.classId, b.opIndex);
    }
};

} // namespace trs
