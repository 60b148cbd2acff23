// The body of every proxy operation:
//     ResponseInfo<GetClient> IfNetClient::getMtu(long& mtu) const { return call<&IfNetClient::getMtu>(*this, mtu); }
#pragma once

#include "platform/TipprmiObjectSkeleton.h"
#include "rmi/CallShape.h"
#include "rmi/Operations.h"

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

namespace road {

// Runs an operation on a skeleton of the interface that declares it: `result` is assigned (null: there is none), and
// the arguments are those at `places`.
using Invoke = void (*)(TreflectServerObject& server, void* result, CallShape::Places places);

// Which operation is called. Travels in one register.
struct Target {
    std::uint32_t classId;
    std::uint32_t opIndex;
};

// Carries one call of any shape. The hooks of the call are made here, over the shape, so that an operation costs no
// code of its own; ClientCallHookrN and its kin (rmi/CallHooks.h) are the same for callers who have types at hand.
// With `invoke`, an object in this process whose class implements the interface is called directly.
void carry(TipprmiObjectClient const& proxy, CallShape const& shape, Target target, Invoke invoke, void* result,
           CallShape::Places places);

template <class>
using Place = void*; // of one argument

// The typed side of carry(): one instance for each result type and number of arguments, shared by all operations that
// have these. It takes first what a proxy's operation has in its registers already, so that the operation does nothing
// but name itself and jump here. Two functions, for a result that is declared in an inner block would be copied.
template <class R, class... Places>
[[gnu::noinline]] R carried(TipprmiObjectClient const& proxy, Places... arguments, CallShape const& shape,
                            Target target, Invoke invoke)
{
    void* const places[] = {arguments..., nullptr};
    R result = initial<R>();
    carry(proxy, shape, target, invoke, &result, places);
    return result;
}
template <class R, class... Places>
    requires std::is_void_v<R>
[[gnu::noinline]] R carried(TipprmiObjectClient const& proxy, Places... arguments, CallShape const& shape,
                            Target target, Invoke invoke)
{
    void* const places[] = {arguments..., nullptr};
    carry(proxy, shape, target, invoke, nullptr, places);
}

// What follows from an operation's row, R and A... being its signature.
template <class Row, unsigned long ClassId, class R, class Arguments>
struct Road;
template <class Row, unsigned long ClassId, class R, class... A>
struct Road<Row, ClassId, R, std::tuple<A...>> {
    static constexpr CallShape const& shape = callShape<R, A...>;

    // Of a local-capable operation: the object that `proxy` refers to, when it is called directly. One that is not
    // here, is observed, or is of a class that does not implement the interface (a servant, or a skeleton of another
    // class) gets the call through its dispatch() like any other.
    static auto* directSkeleton(TipprmiObjectClient const& proxy)
    {
        TreflectServerObject* const server = proxy.getStub_()->localServer();
        bool const isDirect = server != nullptr && server->implements(ClassId) && !server->isObserved();
        return isDirect ? static_cast<typename Row::Skeleton*>(server) : nullptr;
    }

    static void invoke(TreflectServerObject& server, [[maybe_unused]] void* result,
                       [[maybe_unused]] CallShape::Places places)
    {
        invokeWith(static_cast<typename Row::Skeleton&>(server), result, places, std::index_sequence_for<A...>{});
    }
    static constexpr Invoke invokeHere()
    {
        if constexpr (Row::isLocal) {
            return &invoke;
        } else {
            return nullptr;
        }
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

// Calls the operation `Member` on the object behind `proxy`, by the road that its list states. `arguments` are the
// operation's own. A local one is tried directly, before anything is made for a message.
template <auto Member, class... Argument>
auto call(TipprmiObjectClient const& proxy, Argument&... arguments)
{
    using Row = OperationRow<Member>;
    using Road = road::RoadOf<Row, operationClassId<Member>>;
    static_assert(std::is_same_v<typename Row::Signature::Arguments, std::tuple<Argument&...>>);
    if constexpr (Row::isLocal) {
        if (auto* const skeleton = Road::directSkeleton(proxy)) [[likely]] {
            return (skeleton->*Row::skeletonMember)(arguments...);
        }
    }
    // A function more between here and there, and the compiler would make a call of the jump.
    return road::carried<typename Row::Signature::Result, road::Place<Argument>...>(
        proxy, road::placeOf(arguments)..., Road::shape, {operationClassId<Member>, Row::index}, Road::invokeHere());
}
