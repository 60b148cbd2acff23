// The time that an asynchronous call has, with its completion token.
#pragma once

#include <asio/associator.hpp>
#include <asio/async_result.hpp>

#include <chrono>
#include <optional>
#include <type_traits>
#include <utility>

namespace trs {

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

} // namespace trs

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
