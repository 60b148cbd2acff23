// The body of every proxy operation:
//     ResponseInfo<GetClient> IfNetClient::getMtu(long& mtu) const { return call<&IfNetClient::getMtu>(*this, mtu); }
#pragma once

#include "platform/TipprmiObjectSkeleton.h"
#include "rmi/CallShape.h"
#include "rmi/Operations.h"

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace road {

// Runs an operation on a skeleton of the interface that declares it: `result` is assigned (null: there is none), and
// the arguments are those at `places`.
using Invoke = void (*)(TreflectServerObject& server, void* result, CallShape::Places places);

// Carries one call of any shape. The hooks of the call are made here, over the shape, so that an operation costs no
// code of its own; ClientCallHookrN and its kin (rmi/CallHooks.h) are the same for callers who have types at hand.
// With `invoke`, an object in this process whose class implements the interface is called directly.
void carry(TipprmiObjectClient const& proxy, CallShape const& shape, Invoke invoke, unsigned long classId,
           unsigned long opIndex, void* result, CallShape::Places places);

// The typed side of carry(): one instance per signature, shared by all operations that have it.
template <class R, class... A>
[[gnu::noinline]] R carried(TipprmiObjectClient const& proxy, Invoke invoke, unsigned long classId,
                            unsigned long opIndex, A... arguments)
{
    auto const places = placesOf(arguments...);
    if constexpr (std::is_void_v<R>) {
        carry(proxy, callShape<R, A...>, invoke, classId, opIndex, nullptr, places.data());
    } else {
        R result = initial<R>();
        carry(proxy, callShape<R, A...>, invoke, classId, opIndex, &result, places.data());
        return result;
    }
}

// The road of one operation, R and A... being its signature.
template <class Row, unsigned long ClassId, class R, class Arguments>
struct Road;
template <class Row, unsigned long ClassId, class R, class... A>
struct Road<Row, ClassId, R, std::tuple<A...>> {
    static R remoteOnly(TipprmiObjectClient const& proxy, A... arguments)
    {
        return carried<R, A...>(proxy, nullptr, ClassId, Row::index, arguments...);
    }

    // An object here whose class implements the interface is called directly, before anything is made for a message.
    // One that does not (a servant, or a skeleton of another class) gets the call through its dispatch() like any
    // other.
    static R localCapable(TipprmiObjectClient const& proxy, A... arguments)
    {
        TreflectServerObject* const server = proxy.getStub_()->localServer();
        if (server != nullptr && server->implements(ClassId) && !server->isObserved()) [[likely]] {
            return (static_cast<typename Row::Skeleton*>(server)->*Row::skeletonMember)(arguments...);
        }
        return carried<R, A...>(proxy, &invoke, ClassId, Row::index, arguments...);
    }

    static void invoke(TreflectServerObject& server, [[maybe_unused]] void* result,
                       [[maybe_unused]] CallShape::Places places)
    {
        invokeWith(static_cast<typename Row::Skeleton&>(server), result, places, std::index_sequence_for<A...>{});
    }

private:
    template <class Skeleton, std::size_t... I>
    static void invokeWith(Skeleton& skeleton, [[maybe_unused]] void* result, [[maybe_unused]] CallShape::Places places,
                           std::index_sequence<I...>)
    {
        if constexpr (std::is_void_v<R>) {
            (skeleton.*Row::skeletonMember)(*static_cast<std::remove_reference_t<A>*>(places[I])...);
        } else {
            *static_cast<R*>(result) =
                (skeleton.*Row::skeletonMember)(*static_cast<std::remove_reference_t<A>*>(places[I])...);
        }
    }
};

template <class Row, unsigned long ClassId>
using RoadOf = Road<Row, ClassId, typename Row::Signature::Result, typename Row::Signature::Arguments>;

} // namespace road

// Calls the operation `Member` on the object behind `proxy`, by the road that its list states.
template <auto Member, class... Actual>
auto call(TipprmiObjectClient const& proxy, Actual&... arguments)
{
    using Row = OperationRow<Member>;
    using Road = road::RoadOf<Row, operationClassId<Member>>;
    if constexpr (Row::isLocal) {
        return Road::localCapable(proxy, arguments...);
    } else {
        return Road::remoteOnly(proxy, arguments...);
    }
}
