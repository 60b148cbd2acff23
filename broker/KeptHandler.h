// What broker/Async.h and broker/Gather.h stand on; of no use without them.
#pragma once

#include <asio/associated_allocator.hpp>
#include <asio/associated_executor.hpp>
#include <asio/dispatch.hpp>
#include <asio/execution.hpp>
#include <asio/execution_context.hpp>
#include <asio/post.hpp>
#include <asio/prefer.hpp>
#include <asio/query.hpp>
#include <asio/system_executor.hpp>

#include <memory>
#include <mutex>
#include <optional>
#include <tuple>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

namespace trs::async {

// The handlers that wait for their call on one execution context, which destroys them when it is destroyed.
class Roll {
public:
    class Member {
    public:
        // Under the roll's lock. What is left, for an end without it.
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

// A handler until it is called, once, on its executor; or until its execution context is destroyed.
template <class Handler, class... Values>
class KeptHandler final : private Roll::Member {
public:
    explicit KeptHandler(Handler&& handler) : roll_(rollOf(asio::get_associated_executor(handler)))
    {
        auto const executor = asio::get_associated_executor(handler);
        kept_.emplace(std::move(handler), asio::prefer(executor, asio::execution::outstanding_work_t::tracked_t()));
        if (roll_ != nullptr) {
            std::lock_guard const lock(roll_->mutex);
            roll_->members.insert(this);
        }
    }
    KeptHandler(KeptHandler const&) = delete;
    KeptHandler& operator=(KeptHandler const&) = delete;
    ~KeptHandler()
    {
        if (roll_ != nullptr) {
            std::lock_guard const lock(roll_->mutex);
            roll_->members.erase(this);
        }
    }

    // Has it called: within, when it has no executor of its own. Once.
    void finish(Values... values)
    {
        if (roll_ == nullptr) {
            asio::dispatch(kept_->executor, call(std::move(values)...));
            return;
        }
        std::lock_guard const lock(roll_->mutex);
        if (kept_) {
            asio::post(kept_->executor, call(std::move(values)...));
            kept_.reset();
        }
    }
    // Its context was destroyed.
    bool isGone() const
    {
        if (roll_ == nullptr) {
            return false;
        }
        std::lock_guard const lock(roll_->mutex);
        return !kept_;
    }

private:
    using Tracked = std::decay_t<decltype(asio::prefer(std::declval<asio::associated_executor_t<Handler> const&>(),
                                                       asio::execution::outstanding_work_t::tracked_t()))>;
    struct Kept {
        Kept(Handler&& itsHandler, Tracked itsExecutor)
            : handler(std::move(itsHandler)), executor(std::move(itsExecutor))
        {
        }
        Handler handler;
        Tracked executor; // whose context has work until the handler is called
    };
    template <class Allocator>
    struct Call {
        using allocator_type = Allocator;
        allocator_type get_allocator() const noexcept { return allocator; }

        void operator()() { std::apply(std::move(handler), std::move(values)); }

        Allocator allocator;
        Handler handler;
        std::tuple<Values...> values;
        Tracked executor;
    };

    std::shared_ptr<void> dismiss() override
    {
        auto left = kept_ ? std::make_shared<Kept>(std::move(*kept_)) : nullptr;
        kept_.reset();
        return left;
    }
    auto call(Values... values)
    {
        auto const allocator = asio::get_associated_allocator(kept_->handler);
        return Call<std::decay_t<decltype(allocator)>>{allocator, std::move(kept_->handler),
                                                       std::tuple<Values...>(std::move(values)...), kept_->executor};
    }

    std::shared_ptr<Roll> const roll_; // null for executors without a context
    std::optional<Kept> kept_;
};

} // namespace trs::async
