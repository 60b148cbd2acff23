// Asynchronous calls, by Asio's completion tokens:
//
//     trs::asyncCall<&IfNetClient::getMtu>(proxy, [](std::error_code error, auto reply) { ... });
//     auto reply = trs::asyncCall<&IfNetClient::setMtu>(proxy, 1500, asio::use_future).get();
//     auto [result, mtu] = co_await trs::asyncCall<&IfNetClient::getMtu>(proxy, asio::use_awaitable);
//
// The in-arguments stand in the operation's order, and the token last: a function, asio::use_future,
// asio::use_awaitable, asio::experimental::deferred, or one of the program's own. The completion signature is
//     void(std::error_code, Reply<Result, OutArgument...>)
//
// One thread of the library's carries the calls of all peers, many at a time over one connection to each. A call may be
// started on any thread. Its handler runs on the handler's associated executor, and never before the call was started.
// A handler without an executor of its own runs on that thread, or for an object of this process on one of its handler
// threads; it must not wait there.
//
// Every call ends by its deadline: that of the thread that starts it (broker/Deadline.h), or the one that
// bindDeadline() gives. A call may be cancelled by the handler's associated cancellation slot, from any thread and at
// any time, by cancellation of any type. Neither disturbs other calls: what had been sent is carried out all the same,
// and its answer is thrown away. When the execution context of a handler is destroyed, the handler is too, without
// being called.
//
// Clang 14 needs ASIO_HAS_CO_AWAIT and ASIO_HAS_STD_COROUTINE defined to see Asio's coroutines. GCC 12 warns falsely
// (-Wmismatched-new-delete) of some that wait more than once.
#pragma once

#include "broker/AsyncCall.h"
#include "broker/BindDeadline.h"
#include "broker/Deadline.h"
#include "broker/KeptHandler.h"
#include "broker/Reply.h"
#include "platform/TipprmiObjectClient.h"
#include "rmi/Operations.h"

#include <asio/associated_cancellation_slot.hpp>
#include <asio/async_result.hpp>

#include <array>
#include <cstddef>
#include <future>
#include <memory>
#include <system_error>
#include <tuple>
#include <type_traits>
#include <utility>

namespace trs {

class RunPermissionPause;

// The errors of asynchronous calls have the category "trsman.call". They compare equal to a CallFailure::Kind,
//     if (error == trs::CallFailure::Kind::deadline) ...
// and to the std::errc that comes nearest, such as timed_out and operation_canceled. A call on which a future would be
// waited for on the thread that carries it ends at once with std::errc::resource_deadlock_would_occur.
std::error_category const& callCategory();
std::error_code errorOf(CallFailure::Kind kind, CallFailure::CarriedOut carriedOut);
inline std::error_condition make_error_condition(CallFailure::Kind kind)
{
    return {static_cast<int>(kind), callCategory()};
}
// Whether the call that ended so was carried out. Of errors of another category: unknown.
CallFailure::CarriedOut carriedOut(std::error_code error);

// What Async.h is made of.
namespace async {

// A call with its handler. The types of the call decide how the reply is read, those of the handler where it goes.
template <class Handler, class ReplyType>
class HandledCall final : public AsyncCall {
public:
    // Reads the result and the out-arguments, or none of them when the stream's reader fails.
    using Read = void (*)(TipprmiStream& stream, ReplyType& reply);

    HandledCall(TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex, Read itsRead,
                Handler&& handler)
        : AsyncCall(stub, classId, opIndex), read_(itsRead), handler_(std::move(handler))
    {
    }

private:
    void read(TipprmiStream& reply) override { read_(reply, reply_); }
    void complete(CallFailure const* failure) override
    {
        std::error_code error;
        if (failure != nullptr) {
            error = errorOf(failure->kind, failure->carriedOut);
            reply_ = ReplyType();
            reply_.setFailure(*failure);
        }
        handler_.finish(error, std::move(reply_));
    }

    Read const read_;
    ReplyType reply_;
    KeptHandler<Handler, std::error_code, ReplyType> handler_;
};

template <class T>
inline constexpr bool isFuture = false;
template <class T>
inline constexpr bool isFuture<std::future<T>> = true;

// Starts a call once a token has made a handler of itself.
template <class Handler, class ReplyType>
std::shared_ptr<AsyncCall> startCall(Handler&& handler, TreflectStubRef const& stub, std::uint32_t classId,
                                     std::uint32_t opIndex, void (*read)(TipprmiStream&, ReplyType&),
                                     auto const& writeArguments)
{
    using Plain = std::decay_t<Handler>;
    auto const time = AssociatedDeadline<Plain>::get(handler).value_or(Deadline::current());
    auto const slot = asio::get_associated_cancellation_slot(handler);
    auto const call =
        std::make_shared<HandledCall<Plain, ReplyType>>(stub, classId, opIndex, read, std::forward<Handler>(handler));
    writeArguments(call->request());
    if (slot.is_connected()) {
        // Emitted from anywhere, even later than the end; so it is known to nobody but by itself.
        auto cancelled = slot;
        cancelled.assign([weak = std::weak_ptr<AsyncCall>(call)](asio::cancellation_type) {
            if (auto const running = weak.lock()) {
                running->cancel();
            }
        });
    }
    call->start(time);
    return call;
}

// An operation's types as a call wants them: R its result, A... its arguments, In... and Out... those of either kind.
template <class... T>
struct Types {};
template <class R, class Arguments, class In = Types<>, class Out = Types<>, class... Left>
struct Sides;
template <class T>
inline constexpr bool isIn = std::is_const_v<std::remove_reference_t<T>>;
template <class R, class... A, class... In, class... Out>
struct Sides<R, std::tuple<A...>, Types<In...>, Types<Out...>> {
    using InValues = std::tuple<In...>;
    using ReplyType = Reply<R, Out...>;
    using Arguments = std::tuple<A...>;
    static constexpr CallShape const& shape = callShape<R, A...>;
    static constexpr std::size_t count = sizeof...(A);
    static constexpr bool hasResult = !std::is_void_v<R>;
};
template <class R, class... A, class... In, class... Out, class First, class... Left>
struct Sides<R, std::tuple<A...>, Types<In...>, Types<Out...>, First, Left...>
    : std::conditional_t<isIn<First>,
                         std::type_identity<Sides<R, std::tuple<A...>, Types<In..., std::remove_cvref_t<First>>,
                                                  Types<Out...>, Left...>>,
                         std::type_identity<Sides<R, std::tuple<A...>, Types<In...>,
                                                  Types<Out..., std::remove_cvref_t<First>>, Left...>>>::type {};
template <class R, class Arguments>
struct SidesOf;
template <class R, class... A>
struct SidesOf<R, std::tuple<A...>> : Sides<R, std::tuple<A...>, Types<>, Types<>, A...> {};

// Where the values of one kind stand among an operation's arguments.
template <class Arguments, bool areIn, class Values, std::size_t... I>
void placeValues(std::array<void*, CallShape::mostArguments + 1>& places, Values& values, std::size_t skipped,
                 std::index_sequence<I...>)
{
    std::array<void*, sizeof...(I) + 1> const all{const_cast<void*>(static_cast<void const*>(&std::get<I>(values)))...,
                                                  nullptr};
    std::size_t next = skipped;
    std::size_t at = 0;
    [&]<class... A>(std::type_identity<std::tuple<A...>>) {
        ((places[at] = isIn<A> == areIn ? all[next++] : places[at], ++at), ...);
    }(std::type_identity<Arguments>{});
}

template <auto Member>
using SidesOfOperation =
    SidesOf<typename OperationRow<Member>::Signature::Result, typename OperationRow<Member>::Signature::Arguments>;

template <class Sides>
struct Initiation {
    template <class Handler>
    std::shared_ptr<AsyncCall> operator()(Handler&& handler, TreflectStubRef const& stub, std::uint32_t classId,
                                          std::uint32_t opIndex, typename Sides::InValues const& values) const
    {
        return startCall<Handler, typename Sides::ReplyType>(
            std::forward<Handler>(handler), stub, classId, opIndex, &readReply, [&values](TipprmiStream& request) {
                std::array<void*, CallShape::mostArguments + 1> places{};
                placeValues<typename Sides::Arguments, true>(
                    places, values, 0, std::make_index_sequence<std::tuple_size_v<typename Sides::InValues>>{});
                Sides::shape.writeIn(request, places.data());
            });
    }

    static void readReply(TipprmiStream& stream, typename Sides::ReplyType& reply)
    {
        auto& values = reply.values();
        std::array<void*, CallShape::mostArguments + 1> places{};
        placeValues<typename Sides::Arguments, false>(
            places, values, Sides::hasResult ? 1 : 0,
            std::make_index_sequence<std::tuple_size_v<std::remove_reference_t<decltype(values)>>>{});
        if constexpr (Sides::hasResult) {
            Sides::shape.result->read(stream, &std::get<0>(values));
        }
        Sides::shape.readOut(stream, places.data());
    }
};

} // namespace async

// Calls the operation `Member` on the object behind `proxy`, with its in-arguments in their order, and the token last.
template <auto Member, class... InAndToken>
auto asyncCall(TipprmiObjectClient const& proxy, InAndToken&&... inAndToken)
{
    using Row = OperationRow<Member>;
    using Sides = async::SidesOfOperation<Member>;
    using InValues = typename Sides::InValues;
    constexpr std::size_t count = std::tuple_size_v<InValues>;
    static_assert(sizeof...(InAndToken) == count + 1, "the operation's in-arguments and a completion token are needed");
    using Signature = void(std::error_code, typename Sides::ReplyType);

    auto given = std::forward_as_tuple(std::forward<InAndToken>(inAndToken)...);
    using Token = std::decay_t<std::tuple_element_t<count, decltype(given)>>;
    Token token(std::forward<std::tuple_element_t<count, decltype(given)>>(std::get<count>(given)));
    InValues values = [&]<std::size_t... I>(std::index_sequence<I...>) {
        return InValues(std::forward<std::tuple_element_t<I, decltype(given)>>(std::get<I>(given))...);
    }(std::make_index_sequence<count>{});
    auto const initiate = [&] {
        return asio::async_initiate<Token, Signature>(
            async::Initiation<Sides>{}, token, TreflectStubRef(proxy.getStub_()),
            std::uint32_t{operationClassId<Member>}, static_cast<std::uint32_t>(Row::index), std::move(values));
    };
    if constexpr (async::isFuture<decltype(initiate())>) {
        if (AsyncCall::isOnItsThread()) {
            return asio::async_initiate<Token, Signature>(
                [](auto&& handler) {
                    std::forward<decltype(handler)>(handler)(
                        std::make_error_code(std::errc::resource_deadlock_would_occur), typename Sides::ReplyType());
                },
                token);
        }
    }
    return initiate();
}

// What came of a call by numbers: the stream is placed at the result, and empty after a failure.
class RawReply {
public:
    TipprmiStream& stream() { return *stream_; }
    CallFailure const& failure() const
    {
        static CallFailure const none;
        return failure_ != nullptr ? *failure_ : none;
    }
    void setFailure(CallFailure const& failure) { failure_ = std::make_shared<CallFailure const>(failure); }

private:
    std::shared_ptr<TipprmiStream> stream_ = std::make_shared<TipprmiStream>(100);
    std::shared_ptr<CallFailure const> failure_;
};

// Calls the operation of these numbers, whatever proxies know of it. `arguments` holds its in-arguments and nothing
// else. The completion signature is void(std::error_code, RawReply).
template <class Token>
auto asyncDispatch(TipprmiObjectClient const& proxy, unsigned long classId, unsigned long opIndex,
                   TipprmiStream const& arguments, Token&& token)
{
    std::decay_t<Token> own(std::forward<Token>(token));
    return asio::async_initiate<std::decay_t<Token>, void(std::error_code, RawReply)>(
        []<class Handler>(Handler&& handler, TreflectStubRef const& stub, unsigned long ofClass, unsigned long index,
                          TipprmiStream const& given) {
            async::startCall<Handler, RawReply>(
                std::forward<Handler>(handler), stub, static_cast<std::uint32_t>(ofClass),
                static_cast<std::uint32_t>(index),
                [](TipprmiStream& stream, RawReply& reply) {
                    std::size_t const length = stream.available();
                    reply.stream().marshall(stream.take(length), static_cast<int>(length));
                    reply.stream().setOrigin(stream.origin(), stream.isOriginExclusive());
                },
                [&given](TipprmiStream& request) { request.marshall(given.data(), static_cast<int>(given.size())); });
        },
        own, TreflectStubRef(proxy.getStub_()), classId, opIndex, arguments);
}

// The value of a call's future. Like its get(), but the thread gives the run permission back while it waits, as it does
// in a synchronous call, so that objects here can be called meanwhile.
class WaitingForCalls {
public:
    WaitingForCalls();
    WaitingForCalls(WaitingForCalls const&) = delete;
    WaitingForCalls& operator=(WaitingForCalls const&) = delete;
    ~WaitingForCalls();

private:
    std::unique_ptr<RunPermissionPause> const pause_;
};
template <class T>
T valueOf(std::future<T> future)
{
    {
        WaitingForCalls const waiting;
        future.wait();
    }
    return future.get();
}

} // namespace trs

template <>
struct std::is_error_condition_enum<trs::CallFailure::Kind> : std::true_type {};
