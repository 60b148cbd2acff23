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
#include "broker/Deadline.h"
#include "platform/TipprmiObjectClient.h"
#include "rmi/CallShape.h"
#include "rmi/Operations.h"

#include <asio/associated_allocator.hpp>
#include <asio/associated_cancellation_slot.hpp>
#include <asio/associated_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/dispatch.hpp>
#include <asio/execution.hpp>
#include <asio/execution_context.hpp>
#include <asio/post.hpp>
#include <asio/prefer.hpp>
#include <asio/query.hpp>
#include <asio/system_executor.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <tuple>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

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

// What an operation gives: its result, unless that is void, and its out-arguments, in their order. get<0>() and
// structured bindings begin with the result. After a failure the values are those that a failed call returns: false,
// empty, zero, or a failed status.
template <class R, class... Out>
class Reply {
    static constexpr std::size_t results = std::is_void_v<R> ? 0 : 1;

public:
    using Values = std::conditional_t<std::is_void_v<R>, std::tuple<Out...>,
                                      std::tuple<std::conditional_t<std::is_void_v<R>, bool, R>, Out...>>;

    Reply() : values_(makeValues()) {}

    decltype(auto) result() const
        requires(!std::is_void_v<R>)
    {
        return std::get<0>(values_);
    }
    // The out-argument of that place among the out-arguments.
    template <std::size_t I>
    auto const& out() const
    {
        return std::get<I + results>(values_);
    }
    template <std::size_t I>
    auto const& get() const&
    {
        return std::get<I>(values_);
    }
    template <std::size_t I>
    auto&& get() &&
    {
        return std::get<I>(std::move(values_));
    }

    // Why there are no values; of a call that was delivered, of kind none.
    CallFailure const& failure() const
    {
        static CallFailure const none;
        return failure_ != nullptr ? *failure_ : none;
    }
    void setFailure(CallFailure const& failure) { failure_ = std::make_shared<CallFailure const>(failure); }
    Values& values() { return values_; }

private:
    static Values makeValues()
    {
        if constexpr (std::is_void_v<R>) {
            return Values(road::initial<Out>()...);
        } else {
            return Values(road::initial<R>(), road::initial<Out>()...);
        }
    }

    Values values_;
    std::shared_ptr<CallFailure const> failure_;
};

// The deadline that is associated with a handler, as executors are: by bindDeadline(), however deep it is wrapped.
template <class T, class Default = std::optional<std::chrono::milliseconds>>
struct AssociatedDeadline;

// The token with a time for the call, from its start on.
template <class T>
class DeadlineBinder {
public:
    using DeadlineType = std::chrono::milliseconds;

    template <class U>
    DeadlineBinder(std::chrono::milliseconds duration, U&& target)
        : duration_(duration), target_(std::forward<U>(target))
    {
    }

    std::chrono::milliseconds getDeadline() const noexcept { return duration_; }
    T& get() noexcept { return target_; }
    T const& get() const noexcept { return target_; }
    template <class... A>
    decltype(auto) operator()(A&&... arguments)
    {
        return target_(std::forward<A>(arguments)...);
    }

private:
    std::chrono::milliseconds duration_;
    T target_;
};

template <class T>
DeadlineBinder<std::decay_t<T>> bindDeadline(std::chrono::milliseconds duration, T&& token)
{
    return {duration, std::forward<T>(token)};
}

template <class T, class Default>
struct AssociatedDeadline {
    using type = std::optional<std::chrono::milliseconds>;

    static type get(T const& object, Default const& otherwise = Default()) noexcept
    {
        if constexpr (requires { typename T::DeadlineType; }) {
            return object.getDeadline();
        } else if constexpr (requires { typename asio::associator<AssociatedDeadline, T, Default>::type; }) {
            return asio::associator<AssociatedDeadline, T, Default>::get(object, otherwise);
        } else {
            return otherwise;
        }
    }
};

// What Async.h is made of.
namespace async {

// The calls whose handlers run in one execution context, which ends them when it is destroyed.
class Roll {
public:
    class Member {
    public:
        // Under the roll's lock. What is left of the call, for an end without it.
        virtual std::shared_ptr<void> dismiss() = 0;

    protected:
        ~Member() = default;
    };

    std::mutex mutex;
    std::unordered_set<Member*> members;
};

class RollKeeper final : public asio::execution_context::service {
public:
    using key_type = RollKeeper;
    static inline asio::execution_context::id id;

    explicit RollKeeper(asio::execution_context& context) : service(context) {}
    std::shared_ptr<Roll> const roll = std::make_shared<Roll>();

private:
    void shutdown() override
    {
        std::vector<std::shared_ptr<void>> dismissed;
        std::lock_guard const lock(roll->mutex);
        for (Roll::Member* const member : std::exchange(roll->members, {})) {
            dismissed.push_back(member->dismiss());
        }
    }
};

template <class Executor>
std::shared_ptr<Roll> rollOf(Executor const& executor)
{
    if constexpr (!std::is_same_v<Executor, asio::system_executor> &&
                  asio::can_query_v<Executor const&, asio::execution::context_t>) {
        return asio::use_service<RollKeeper>(asio::query(executor, asio::execution::context)).roll;
    } else {
        return nullptr;
    }
}

// A call with its handler. The types of the call decide how the reply is read, those of the handler where it goes.
template <class Handler, class ReplyType, class Executor>
class HandledCall final : public AsyncCall, private Roll::Member {
public:
    // Reads the result and the out-arguments, or none of them when the stream's reader fails.
    using Read = void (*)(TipprmiStream& stream, ReplyType& reply);

    HandledCall(TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex, Read itsRead,
                Handler&& handler)
        : AsyncCall(stub, classId, opIndex), read_(itsRead), roll_(rollOf(asio::get_associated_executor(handler)))
    {
        Executor const executor = asio::get_associated_executor(handler);
        handled_.emplace(std::move(handler), asio::prefer(executor, asio::execution::outstanding_work_t::tracked_t()));
        if (roll_ != nullptr) {
            std::lock_guard const lock(roll_->mutex);
            roll_->members.insert(this);
        }
    }
    ~HandledCall() override
    {
        if (roll_ != nullptr) {
            std::lock_guard const lock(roll_->mutex);
            roll_->members.erase(this);
        }
    }

private:
    using Tracked = std::decay_t<decltype(asio::prefer(std::declval<Executor const&>(),
                                                       asio::execution::outstanding_work_t::tracked_t()))>;
    struct Handled {
        Handled(Handler&& itsHandler, Tracked itsExecutor)
            : handler(std::move(itsHandler)), executor(std::move(itsExecutor))
        {
        }
        Handler handler;
        Tracked executor; // whose context has work until the handler is called
    };

    void read(TipprmiStream& reply) override { read_(reply, reply_); }
    std::shared_ptr<void> dismiss() override
    {
        auto left = handled_ ? std::make_shared<Handled>(std::move(*handled_)) : nullptr;
        handled_.reset();
        return left;
    }

    void complete(CallFailure const* failure) override
    {
        std::error_code error;
        if (failure != nullptr) {
            error = errorOf(failure->kind, failure->carriedOut);
            reply_ = ReplyType();
            reply_.setFailure(*failure);
        }
        if (roll_ == nullptr) {
            asio::dispatch(handled_->executor, finish(error));
            return;
        }
        std::lock_guard const lock(roll_->mutex);
        if (handled_) {
            asio::post(handled_->executor, finish(error));
            handled_.reset();
        }
    }
    auto finish(std::error_code error)
    {
        auto const allocator = asio::get_associated_allocator(handled_->handler);
        return Finish<std::decay_t<decltype(allocator)>>{allocator, std::move(handled_->handler), error,
                                                         std::move(reply_), handled_->executor};
    }

    template <class Allocator>
    struct Finish {
        using allocator_type = Allocator;
        allocator_type get_allocator() const noexcept { return allocator; }

        void operator()() { std::move(handler)(error, std::move(reply)); }

        Allocator allocator;
        Handler handler;
        std::error_code error;
        ReplyType reply;
        Tracked executor;
    };

    Read const read_;
    ReplyType reply_;
    std::shared_ptr<Roll> const roll_; // null for executors without a context
    std::optional<Handled> handled_;
};

template <class T>
inline constexpr bool isFuture = false;
template <class T>
inline constexpr bool isFuture<std::future<T>> = true;

// Starts a call once a token has made a handler of itself.
template <class Handler, class ReplyType>
void startCall(Handler&& handler, TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex,
               void (*read)(TipprmiStream&, ReplyType&), auto const& writeArguments)
{
    using Plain = std::decay_t<Handler>;
    using Executor = asio::associated_executor_t<Plain>;
    auto const time = AssociatedDeadline<Plain>::get(handler).value_or(Deadline::current());
    auto const slot = asio::get_associated_cancellation_slot(handler);
    auto const call = std::make_shared<HandledCall<Plain, ReplyType, Executor>>(stub, classId, opIndex, read,
                                                                                std::forward<Handler>(handler));
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

template <class Sides>
struct Initiation {
    template <class Handler>
    void operator()(Handler&& handler, TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex,
                    typename Sides::InValues const& values) const
    {
        startCall<Handler, typename Sides::ReplyType>(
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
    using Sides = async::SidesOf<typename Row::Signature::Result, typename Row::Signature::Arguments>;
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

template <class R, class... Out>
struct std::tuple_size<trs::Reply<R, Out...>> : std::tuple_size<typename trs::Reply<R, Out...>::Values> {};
template <std::size_t I, class R, class... Out>
struct std::tuple_element<I, trs::Reply<R, Out...>> : std::tuple_element<I, typename trs::Reply<R, Out...>::Values> {};

// As Asio has it for its own binders.
template <class T, class Signature>
class asio::async_result<trs::DeadlineBinder<T>, Signature> {
public:
    template <class Initiation, class Token, class... A>
    static auto initiate(Initiation&& initiation, Token&& token, A&&... arguments)
    {
        return asio::async_initiate<T, Signature>(
            [duration = token.getDeadline(), inner = std::forward<Initiation>(initiation)]<class Handler, class... B>(
                Handler&& handler, B&&... given) mutable {
                std::move(inner)(trs::DeadlineBinder<std::decay_t<Handler>>(duration, std::forward<Handler>(handler)),
                                 std::forward<B>(given)...);
            },
            token.get(), std::forward<A>(arguments)...);
    }
};

template <template <class, class> class Associator, class T, class Default>
struct asio::associator<Associator, trs::DeadlineBinder<T>, Default> {
    using type = typename Associator<T, Default>::type;
    static type get(trs::DeadlineBinder<T> const& binder, Default const& otherwise = Default()) noexcept
    {
        return Associator<T, Default>::get(binder.get(), otherwise);
    }
};
