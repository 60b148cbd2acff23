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

// What runs an operation on the server: `run` gets `context`, the place of the result and those of the arguments, of
// which it may exchange those of out-arguments for others that last as long as the run permission is held.
struct Implementation {
    void (*run)(void* context, void* result, void** places);
    void* context;
};

// An out-argument that an implementation may take as `Lent<T>&` instead of `T&`: it need not copy then what it has.
template <class T>
class Lent {
public:
    explicit Lent(void*& place) : place_(place), own_(*static_cast<T*>(place)) {}
    Lent(Lent const&) = delete;
    Lent& operator=(Lent const&) = delete;

    // The reply tells `value`, which the object holds and which is not copied: it must not be a local variable.
    void lend(T const& value) { place_ = const_cast<T*>(&value); }
    // Unless something is lent the reply tells this, as usual.
    operator T&() { return own_; }

private:
    void*& place_; // of what the reply tells
    T& own_;
};

// One execution on the server: reads the in-arguments, runs the implementation, writes the result and then the
// out-arguments, and tells observers. A request that does not hold exactly the in-arguments runs nothing and is left
// with its failure recorded.
void serve(CallShape const& shape, Implementation implementation, TreflectServerObject const& object,
           unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);

// How an argument comes to an implementation that lends.
template <class A>
struct Passed;
template <class T>
struct Passed<T const&> {
    using Lending = T const&;
    static T const& of(void*& place) { return *static_cast<T const*>(place); }
};
template <class T>
struct Passed<T&> {
    using Lending = Lent<T>;
    static Lent<T> of(void*& place) { return Lent<T>(place); }
};

// A callable with the signature R(A...) as an Implementation; the callable must outlive it.
template <class Signature>
struct Callable;
template <class R, class... A>
struct Callable<R(A...)> {
    static constexpr CallShape const& shape = callShape<R, A...>;

    template <class Function>
    static Implementation of(Function& function)
    {
        return {[](void* context, void* result, void** places) {
                    runWith(*static_cast<Function*>(context), result, places, std::index_sequence_for<A...>{});
                },
                const_cast<void*>(static_cast<void const*>(&function))};
    }

    // Whether a callable has the signature, out-arguments taken as they are or to be lent.
    template <class Function>
    static constexpr bool isPlain = std::is_invocable_r_v<R, Function&, A...>;
    template <class Function>
    static constexpr bool isLending = std::is_invocable_r_v<R, Function&, typename Passed<A>::Lending&...>;

private:
    template <class Function, std::size_t... I>
    static R runPlain(Function& function, [[maybe_unused]] void** places, std::index_sequence<I...>)
    {
        return function(*static_cast<std::remove_reference_t<A>*>(places[I])...);
    }
    template <class Function>
    static R runLending(Function& function, typename Passed<A>::Lending... arguments)
    {
        return function(arguments...);
    }
    template <class Function, std::size_t... I>
    static R run(Function& function, void** places, std::index_sequence<I...> all)
    {
        if constexpr (isPlain<Function>) {
            return runPlain(function, places, all);
        } else {
            return runLending<Function>(function, Passed<A>::of(places[I])...);
        }
    }
    template <class Function, std::size_t... I>
    static void runWith(Function& function, [[maybe_unused]] void* result, void** places, std::index_sequence<I...> all)
    {
        if constexpr (std::is_void_v<R>) {
            run(function, places, all);
        } else {
            *static_cast<R*>(result) = run(function, places, all);
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
