// What an asynchronous call gives.
#pragma once

#include "broker/CallFailure.h"
#include "rmi/CallShape.h"

#include <cstddef>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

namespace trs {

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

} // namespace trs

template <class R, class... Out>
struct std::tuple_size<trs::Reply<R, Out...>> : std::tuple_size<typename trs::Reply<R, Out...>::Values> {};
template <std::size_t I, class R, class... Out>
struct std::tuple_element<I, trs::Reply<R, Out...>> : std::tuple_element<I, typename trs::Reply<R, Out...>::Values> {};
