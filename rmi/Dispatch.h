// The server's side of the call road, from the same operation lists.
#pragma once

#include "platform/TipprmiObjectSkeleton.h"
#include "rmi/Call.h"
#include "rmi/CallShape.h"
#include "rmi/Operations.h"

#include <array>
#include <cstddef>
#include <span>
#include <type_traits>
#include <utility>

namespace road {

// What runs an operation on the server: `run` gets `context`, the place of the result and those of the arguments.
struct Implementation {
    void (*run)(void* context, void* result, CallShape::Places places);
    void* context;
};

// One execution on the server: reads the in-arguments, runs the implementation, writes the result and then the
// out-arguments, and tells observers. A request that does not hold exactly the in-arguments runs nothing and is left
// with its failure recorded.
void serve(CallShape const& shape, Implementation implementation, TreflectServerObject const& object,
           unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);

// A callable with the signature R(A...) as an Implementation; the callable must outlive it.
template <class Signature>
struct Callable;
template <class R, class... A>
struct Callable<R(A...)> {
    static constexpr CallShape const& shape = callShape<R, A...>;

    template <class Function>
    static Implementation of(Function& function)
    {
        return {[](void* context, void* result, CallShape::Places places) {
                    runWith(*static_cast<Function*>(context), result, places, std::index_sequence_for<A...>{});
                },
                const_cast<void*>(static_cast<void const*>(&function))};
    }

private:
    template <class Function, std::size_t... I>
    static void runWith(Function& function, [[maybe_unused]] void* result, [[maybe_unused]] CallShape::Places places,
                        std::index_sequence<I...>)
    {
        if constexpr (std::is_void_v<R>) {
            function(*static_cast<std::remove_reference_t<A>*>(places[I])...);
        } else {
            *static_cast<R*>(result) = function(*static_cast<std::remove_reference_t<A>*>(places[I])...);
        }
    }
};

template <class Row>
using CallableOf = Callable<typename Row::Signature::Function>;

// One row of a skeleton's dispatch table.
struct DispatchRow {
    unsigned long index;
    CallShape const* shape;
    Invoke invoke;
};

// Serves the operation of that index from a table; false when there is none.
bool serveFrom(std::span<DispatchRow const> table, TreflectServerObject& object, unsigned long classId,
               unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);

} // namespace road

// The base of a skeleton with typed operations: `class ConditionSkeleton : public TypedSkeleton<ConditionSkeleton,
// ConditionClient>` declares the operations of Operations<ConditionClient> as virtual functions, in index order.
// `Base` is the skeleton of the interface that this one extends.
template <class Skeleton, class Proxy, class Base = TipprmiObjectSkeleton>
class TypedSkeleton : public Base {
public:
    bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                  TipprmiStream& reply) override;

protected:
    template <class... A>
    explicit TypedSkeleton(A const&... arguments) : Base(arguments...)
    {
        this->setInterface(&interface);
    }

    static constexpr TreflectServerObject::Interface const* baseInterface()
    {
        if constexpr (requires { &Base::interface; }) {
            return &Base::interface;
        } else {
            return nullptr;
        }
    }
    static constinit TreflectServerObject::Interface const interface;
};
