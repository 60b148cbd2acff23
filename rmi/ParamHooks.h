// How the in-arguments of a call reach a request, and its out-arguments come from a reply.
#pragma once

#include "rmi/CallShape.h"

#include <array>
#include <type_traits>

// Writes the in-arguments of one call. Lives on the stack of the proxy operation.
class InParamHook {
public:
    virtual void handleParams(TipprmiStream& request) const = 0;
    virtual ~InParamHook();

protected:
    InParamHook() = default;
    InParamHook(InParamHook const&) = default;
    InParamHook& operator=(InParamHook const&) = default;
};

// Reads the out-arguments of one call.
class OutParamHook {
public:
    virtual void handleParams(TipprmiStream& reply) const = 0;
    virtual ~OutParamHook();

protected:
    OutParamHook() = default;
    OutParamHook(OutParamHook const&) = default;
    OutParamHook& operator=(OutParamHook const&) = default;
};

// The in-arguments A..., each `T const&`, in declaration order.
template <class... A>
class InParamHookOf final : public InParamHook {
    static_assert((std::is_const_v<std::remove_reference_t<A>> && ...), "in-arguments are taken by const&");

public:
    explicit InParamHookOf(A... arguments) : places_(road::placesOf(arguments...)) {}
    void handleParams(TipprmiStream& request) const override { callShape<void, A...>.writeIn(request, places_.data()); }

private:
    std::array<void*, sizeof...(A) + 1> places_;
};

// The out-arguments B..., each `T&`, in declaration order.
template <class... B>
class OutParamHookOf final : public OutParamHook {
    static_assert((!std::is_const_v<std::remove_reference_t<B>> && ...), "out-arguments are taken by &");

public:
    explicit OutParamHookOf(B... arguments) : places_(road::placesOf(arguments...)) {}
    void handleParams(TipprmiStream& reply) const override { callShape<void, B...>.readOut(reply, places_.data()); }

private:
    std::array<void*, sizeof...(B) + 1> places_;
};

using InParamHook0 = InParamHookOf<>;
template <class A1>
using InParamHook1 = InParamHookOf<A1>;
template <class A1, class A2>
using InParamHook2 = InParamHookOf<A1, A2>;
template <class A1, class A2, class A3>
using InParamHook3 = InParamHookOf<A1, A2, A3>;
template <class A1, class A2, class A3, class A4>
using InParamHook4 = InParamHookOf<A1, A2, A3, A4>;
template <class A1, class A2, class A3, class A4, class A5>
using InParamHook5 = InParamHookOf<A1, A2, A3, A4, A5>;

using OutParamHook0 = OutParamHookOf<>;
template <class B1>
using OutParamHook1 = OutParamHookOf<B1>;
template <class B1, class B2>
using OutParamHook2 = OutParamHookOf<B1, B2>;
template <class B1, class B2, class B3>
using OutParamHook3 = OutParamHookOf<B1, B2, B3>;
template <class B1, class B2, class B3, class B4>
using OutParamHook4 = OutParamHookOf<B1, B2, B3, B4>;
template <class B1, class B2, class B3, class B4, class B5>
using OutParamHook5 = OutParamHookOf<B1, B2, B3, B4, B5>;
