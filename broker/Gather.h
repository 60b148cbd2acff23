// Many asynchronous calls of one operation, with a limit to how many are on their way:
//
//     auto const all = trs::valueOf(trs::gather<&IfNetClient::getMtu>(interfaces, 16, asio::use_future));
//     for (auto const& [error, reply] : all) { ... }
//
// Each element of the range is a proxy; of an operation with in-arguments a tuple of the proxy and these:
//
//     std::vector<std::tuple<IfNetClient, long>> calls;
//
// The completion signature is void(std::vector<Gathered<Reply<Result, OutArgument...>>>): how each call ended, in the
// range's order. Executors, deadlines (of each call, from its own start on) and cancellation work as with asyncCall();
// a cancellation ends the calls that are on their way and those that are not begun.
#pragma once

#include "broker/Async.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <memory>
#include <mutex>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

namespace trs {

template <class ReplyType>
struct Gathered {
    std::error_code error;
    ReplyType reply;
};

namespace async {

template <class Call>
auto argumentsOf(Call const& call)
{
    if constexpr (requires { std::tuple_size<Call>::value; }) {
        return call;
    } else {
        return std::tuple<Call>(call);
    }
}

// All the calls of one gather(). Owned by those that are under way.
template <auto Member, class Arguments, class Handler>
class Gathering : public std::enable_shared_from_this<Gathering<Member, Arguments, Handler>> {
public:
    using Sides = SidesOfOperation<Member>;
    using ReplyType = typename Sides::ReplyType;
    using Ends = std::vector<Gathered<ReplyType>>;
    static_assert(std::tuple_size_v<Arguments> == std::tuple_size_v<typename Sides::InValues> + 1,
                  "a call is the proxy and the operation's in-arguments");

    Gathering(std::vector<Arguments>&& calls, std::size_t limit, Handler&& handler)
        : calls_(std::move(calls)), limit_(std::max<std::size_t>(limit, 1)),
          time_(AssociatedDeadline<Handler>::get(handler).value_or(Deadline::current())), ends_(calls_.size()),
          running_(calls_.size()), handler_(std::move(handler))
    {
    }

    // Begins as many calls as may be. At the end of all tells of it.
    void goOn()
    {
        std::unique_lock lock(mutex_);
        if (isBeginning_) {
            return; // whoever does sees what has changed
        }
        isBeginning_ = true;
        while (next_ < calls_.size() && (count_ < limit_ || isCancelled_)) {
            std::size_t const place = next_++;
            if (isCancelled_ || handler_.isGone()) {
                ends_[place].error = errorOf(CallFailure::Kind::cancelled, CallFailure::CarriedOut::no);
                continue;
            }
            ++count_;
            lock.unlock();
            std::shared_ptr<AsyncCall> const call = begin(place);
            lock.lock();
            running_[place] = call;
            if (isCancelled_) {
                lock.unlock();
                call->cancel();
                lock.lock();
            }
        }
        isBeginning_ = false;
        if (count_ == 0 && next_ == calls_.size()) {
            lock.unlock();
            handler_.finish(std::move(ends_));
        }
    }
    void cancel()
    {
        std::vector<std::weak_ptr<AsyncCall>> running;
        {
            std::lock_guard const lock(mutex_);
            isCancelled_ = true;
            running = running_;
        }
        for (std::weak_ptr<AsyncCall> const& each : running) {
            if (auto const call = each.lock()) {
                call->cancel();
            }
        }
    }

private:
    // The handler of one of them.
    struct End {
        using DeadlineType = std::chrono::milliseconds;

        std::chrono::milliseconds getDeadline() const noexcept { return all->time_; }
        void operator()(std::error_code error, ReplyType reply)
        {
            {
                std::lock_guard const lock(all->mutex_);
                all->ends_[place] = {error, std::move(reply)};
                --all->count_;
            }
            all->goOn();
        }

        std::shared_ptr<Gathering> all;
        std::size_t place;
    };

    std::shared_ptr<AsyncCall> begin(std::size_t place)
    {
        return std::apply(
            [&](auto const& proxy, auto const&... in) {
                return Initiation<Sides>{}(End{this->shared_from_this(), place}, TreflectStubRef(proxy.getStub_()),
                                           std::uint32_t{operationClassId<Member>},
                                           static_cast<std::uint32_t>(OperationRow<Member>::index),
                                           typename Sides::InValues(in...));
            },
            calls_[place]);
    }

    std::vector<Arguments> const calls_;
    std::size_t const limit_;
    std::chrono::milliseconds const time_;
    std::mutex mutex_;
    Ends ends_;
    std::vector<std::weak_ptr<AsyncCall>> running_;
    std::size_t next_ = 0;
    std::size_t count_ = 0; // under way
    bool isBeginning_ = false;
    bool isCancelled_ = false;
    KeptHandler<Handler, Ends> handler_;
};

} // namespace async

// Calls the operation `Member` for each element of the range, at most `limit`, and at least one, at a time.
template <auto Member, class Calls, class Token>
auto gather(Calls const& calls, std::size_t limit, Token&& token)
{
    using Arguments = decltype(async::argumentsOf(*std::begin(calls)));
    using Ends = std::vector<Gathered<typename async::SidesOfOperation<Member>::ReplyType>>;
    std::vector<Arguments> all;
    std::transform(std::begin(calls), std::end(calls), std::back_inserter(all),
                   [](auto const& call) { return async::argumentsOf(call); });
    std::decay_t<Token> own(std::forward<Token>(token));
    auto const initiate = [&] {
        return asio::async_initiate<std::decay_t<Token>, void(Ends)>(
            [](auto&& handler, std::vector<Arguments> given, std::size_t most) {
                using Handler = std::decay_t<decltype(handler)>;
                using Gathering = async::Gathering<Member, Arguments, Handler>;
                auto const slot = asio::get_associated_cancellation_slot(handler);
                bool const isNone = given.empty();
                auto const gathering = std::make_shared<Gathering>(std::move(given), most, std::move(handler));
                if (slot.is_connected()) {
                    auto cancelled = slot;
                    cancelled.assign([weak = std::weak_ptr<Gathering>(gathering)](asio::cancellation_type) {
                        if (auto const running = weak.lock()) {
                            running->cancel();
                        }
                    });
                }
                if (isNone) { // whose handler is not to be called within
                    AsyncCall::later([gathering] { gathering->goOn(); });
                } else {
                    gathering->goOn();
                }
            },
            own, std::move(all), limit);
    };
    if constexpr (async::isFuture<decltype(initiate())>) {
        if (AsyncCall::isOnItsThread()) {
            return asio::async_initiate<std::decay_t<Token>, void(Ends)>(
                [](auto&& handler, std::size_t count) {
                    Ends ends(count);
                    for (auto& each : ends) {
                        each.error = std::make_error_code(std::errc::resource_deadlock_would_occur);
                    }
                    std::forward<decltype(handler)>(handler)(std::move(ends));
                },
                own, all.size());
        }
    }
    return initiate();
}

} // namespace trs
