// What a proxy operation tells the framework about one call: how to run it in this process, how to list its
// arguments and how to read its result. Hooks live on the stack for the duration of the call.
#pragma once

#include "platform/ClientCallHelper.h"
#include "rmi/ParamHooks.h"

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

// Appends one value per argument, in order.
template <class... T>
    requires(sizeof...(T) > 0)
void generateParamSeq(TipprmiSequence<TipprmiAny>& list, T const&... arguments)
{
    callShape<void, T const&...>.appendAll(list, road::placesOf(arguments...).data());
}

// Writes each argument, in order.
template <class... T>
void generateRequestStreamHelper(TipprmiStream& stream, T const&... arguments)
{
    callShape<void, T const&...>.writeAll(stream, road::placesOf(arguments...).data());
}

// A call with a result.
template <class R>
class ClientCallHookBaseR : public ClientCallHookBaseV {
public:
    // The result, when no reply replaces it, is failed for a status, and unbound, empty, zero or false otherwise.
    ClientCallHookBaseR() : result_(road::initial<R>()) {}

    void insertResult(TipprmiSequence<TipprmiAny>& list) const override
    {
        appendParam(list, valueType<R>, &result_);
        this->generateParams(list);
    }
    void evaluateResponse(TipprmiStream& stream) const override { valueType<R>.read(stream, &result_); }
    R result() const { return result_; }

protected:
    mutable R result_;
};

// The signature's part: skeleton, member function and the caller's arguments A..., `T const&` for an in-argument and
// `T&` for an out-argument. `Base` is ClientCallHookBaseR<R> or, without a result, ClientCallHookBaseV.
template <class Base, class S, class R, class... A>
class ClientCallHookOf final : public Base {
public:
    using Method = R (S::*)(A...);

    ClientCallHookOf(S* skeleton, Method method, A... arguments)
        : skeleton_(skeleton), method_(method), places_(road::placesOf(arguments...))
    {
    }

    void call() const override
    {
        if (skeleton_ != nullptr && method_ != nullptr) { // else a remote-only operation
            callWith(std::index_sequence_for<A...>{});
        }
    }
    void generateParams(TipprmiSequence<TipprmiAny>& list) const override
    {
        callShape<void, A...>.appendAll(list, places_.data());
    }
    void generateRequestStream(TipprmiStream& stream) const override
    {
        callShape<void, A...>.writeAll(stream, places_.data());
    }

private:
    template <std::size_t... I>
    void callWith(std::index_sequence<I...>) const
    {
        if constexpr (std::is_void_v<R>) {
            (skeleton_->*method_)(*static_cast<std::remove_reference_t<A>*>(places_[I])...);
        } else {
            this->result_ = (skeleton_->*method_)(*static_cast<std::remove_reference_t<A>*>(places_[I])...);
        }
    }

    S* skeleton_;
    Method method_;
    std::array<void*, sizeof...(A) + 1> places_;
};

template <class S, class R, class... A>
using ClientCallHookr = ClientCallHookOf<ClientCallHookBaseR<R>, S, R, A...>;
template <class S, class... A>
using ClientCallHookv = ClientCallHookOf<ClientCallHookBaseV, S, void, A...>;

template <class S, class R>
using ClientCallHookr0 = ClientCallHookr<S, R>;
template <class S, class R, class A1>
using ClientCallHookr1 = ClientCallHookr<S, R, A1>;
template <class S, class R, class A1, class A2>
using ClientCallHookr2 = ClientCallHookr<S, R, A1, A2>;
template <class S, class R, class A1, class A2, class A3>
using ClientCallHookr3 = ClientCallHookr<S, R, A1, A2, A3>;
template <class S, class R, class A1, class A2, class A3, class A4>
using ClientCallHookr4 = ClientCallHookr<S, R, A1, A2, A3, A4>;
template <class S, class R, class A1, class A2, class A3, class A4, class A5>
using ClientCallHookr5 = ClientCallHookr<S, R, A1, A2, A3, A4, A5>;

template <class S>
using ClientCallHookv0 = ClientCallHookv<S>;
template <class S, class A1>
using ClientCallHookv1 = ClientCallHookv<S, A1>;
template <class S, class A1, class A2>
using ClientCallHookv2 = ClientCallHookv<S, A1, A2>;
template <class S, class A1, class A2, class A3>
using ClientCallHookv3 = ClientCallHookv<S, A1, A2, A3>;
template <class S, class A1, class A2, class A3, class A4>
using ClientCallHookv4 = ClientCallHookv<S, A1, A2, A3, A4>;
template <class S, class A1, class A2, class A3, class A4, class A5>
using ClientCallHookv5 = ClientCallHookv<S, A1, A2, A3, A4, A5>;

// Performs a call and gives its result: ClientCallHelper with the same arguments, then the hook's result.
template <class R>
R ClientCallHelperR(ClientCallHookBaseR<R> const& hook, InParamHook const& in, OutParamHook const& out,
                    TreflectObjectStub& stub, TreflectServerObject* server, unsigned long classId,
                    unsigned long opIndex, bool flag)
{
    ClientCallHelper(hook, in, out, stub, server, classId, opIndex, flag);
    return hook.result();
}
