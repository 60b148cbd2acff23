// The shape of a call as constant data: what it takes to carry any operation without code of its own.
#pragma once

#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiAny.h"
#include "rmi/Wire.h"

#include <array>
#include <cstddef>
#include <new>
#include <type_traits>

// What is done with the values of one type that travels, on untyped memory.
struct ValueType {
    std::size_t size;
    std::size_t alignment;
    void (*construct)(void* place);
    void (*destroy)(void* place);
    void (*write)(TipprmiStream& stream, void const* value);
    void (*read)(TipprmiStream& stream, void* value);
};

namespace road {

// A result before the call: failed for a status; unbound, empty, zero or false for any other type.
template <class R>
R initial()
{
    if constexpr (std::is_default_constructible_v<R>) {
        return R{};
    } else {
        return R(R::State::FAILED);
    }
}

} // namespace road

template <class T>
inline constexpr ValueType valueType{
    sizeof(T),
    alignof(T),
    [](void* place) { new (place) T(road::initial<T>()); },
    [](void* place) { static_cast<T*>(place)->~T(); },
    [](TipprmiStream& stream, void const* value) { Wire<T>::write(stream, *static_cast<T const*>(value)); },
    [](TipprmiStream& stream, void* value) { Wire<T>::read(stream, *static_cast<T*>(value)); },
};

// The result and the arguments of an operation, in declaration order. `arguments` in the member functions are the
// places of the caller's arguments.
struct CallShape {
    static constexpr std::size_t mostArguments = 5;
    using Places = void* const*;

    struct Argument {
        ValueType const* type;
        bool isIn; // taken by const&, else filled in by &
    };

    ValueType const* result; // null: none
    std::size_t count;
    std::array<Argument, mostArguments> arguments;

    // Requests and replies: the in-arguments, the out-arguments.
    void writeIn(TipprmiStream& request, Places places) const;
    void readIn(TipprmiStream& request, Places places) const;
    void writeOut(TipprmiStream& reply, Places places) const;
    void readOut(TipprmiStream& reply, Places places) const;
    // In- and out-arguments alike, as their values are now.
    void writeAll(TipprmiStream& stream, Places places) const;
    void appendAll(TipprmiSequence<TipprmiAny>& list, Places places) const;
};

// The shape of an operation with result R (void: none) and arguments A..., each `T const&` or `T&`.
template <class R, class... A>
inline constexpr CallShape callShape = [] {
    static_assert(sizeof...(A) <= CallShape::mostArguments);
    CallShape shape{nullptr, sizeof...(A), {}};
    if constexpr (!std::is_void_v<R>) {
        shape.result = &valueType<R>;
    }
    std::size_t i = 0;
    static_cast<void>(i);
    ((shape.arguments[i++] = {&valueType<std::remove_cvref_t<A>>, std::is_const_v<std::remove_reference_t<A>>}), ...);
    return shape;
}();

// Appends one value of a type to a parameter list.
void appendParam(TipprmiSequence<TipprmiAny>& list, ValueType const& type, void const* value);

namespace road {

// The place of one argument of a call.
template <class A>
void* placeOf(A& argument)
{
    return const_cast<void*>(static_cast<void const*>(&argument));
}

// The places of a call's arguments, for as long as the arguments live.
template <class... A>
std::array<void*, sizeof...(A) + 1> placesOf(A&... arguments)
{
    return {placeOf(arguments)..., nullptr};
}

} // namespace road
