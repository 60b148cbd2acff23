// The bodies of TypedSkeleton, for the source unit of each skeleton: `template class TypedSkeleton<...>;` there.
#pragma once

#include "rmi/Dispatch.h"

namespace road {

template <class Proxy, class Rows>
struct DispatchTable;
template <class Proxy, class... Rows>
struct DispatchTable<Proxy, RowList<Rows...>> {
    static constexpr unsigned long classId = Operations<Proxy>::classId;
    static constexpr std::array<DispatchRow, sizeof...(Rows)> rows{
        DispatchRow{Rows::index, &CallableOf<Rows>::shape, &RoadOf<Rows, classId>::invoke}...};
};

} // namespace road

template <class Skeleton, class Proxy, class Base>
constinit TreflectServerObject::Interface const TypedSkeleton<Skeleton, Proxy, Base>::interface = {
    Operations<Proxy>::classId, baseInterface()};

template <class Skeleton, class Proxy, class Base>
bool TypedSkeleton<Skeleton, Proxy, Base>::dispatch([[maybe_unused]] bool flag, unsigned long classId,
                                                    unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    if (classId == Operations<Proxy>::classId) {
        return road::serveFrom(road::DispatchTable<Proxy, typename Operations<Proxy>::Rows>::rows, *this, classId,
                               opIndex, request, reply);
    }
    if constexpr (std::is_same_v<Base, TipprmiObjectSkeleton>) {
        return false;
    } else {
        return Base::dispatch(flag, classId, opIndex, request, reply);
    }
}
