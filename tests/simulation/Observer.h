// A process that observes objects: does what EventLink does with what the subscriptions decide, and looks at what the
// program is told.
#pragma once

#include "broker/calls/Subscriptions.h"
#include "tests/simulation/Caller.h"

namespace simulation {

class Observer final : public Connection::Holder {
public:
    Observer(World& world, ModelServer& server) : world_(world), server_(server), dialer_(world, server)
    {
        for (unsigned key = 0; key < objectCount; ++key) {
            keys_.emplace_back(TipprmiOID("Object"), 1, key);
        }
        subscriptions_.emplace(timing());
    }

    void subscribe(unsigned key)
    {
        Time const patience = world_.random.between(100, 3000) * millisecond;
        world_.note("subscribe", key);
        ++views_[key].registrations;
        if (auto const message = subscriptions_->add(keys_[key])) {
            send(*message);
        }
        waiting_.push_back({key, world_.now() + patience});
        world_.after(patience, [this] {
            settle();
            act();
        });
        settle();
        act();
    }
    void unsubscribe(unsigned key)
    {
        if (views_[key].users != 0) {
            world_.note("unsubscribe", key);
            --views_[key].users;
            leave(key);
        }
    }
    bool isObserving(unsigned key) const { return views_[key].users != 0; }
    void restart()
    {
        world_.note("observer restarts");
        world_.count(Rare::clientRestarted);
        dialer_.stop();
        if (way_ != nullptr) {
            std::exchange(way_, nullptr)->close(Connection::client);
        }
        for (View& view : views_) {
            view = {view.generation + 1};
        }
        waiting_.clear();
        inbox_.clear();
        isFull_ = false;
        subscriptions_.emplace(timing());
    }
    // Everything is observed, and everything was told.
    void finish()
    {
        world_.claim(!subscriptions_->hasGaps(), "a gap is not over");
        for (unsigned key = 0; key < objectCount; ++key) {
            View const& view = views_[key];
            world_.claim(view.users != 0 && subscriptions_->state(keys_[key]) == State::confirmed,
                         "a subscription is not live", key);
            world_.claim(!view.isInGap, "the end of a gap was not told", key);
            world_.claim(view.last == server_.versions[key], "the last event was not told", key);
        }
    }

    void receive(Connection& connection) override
    {
        while (&connection == way_ && !isFull_) {
            auto const message = connection.take(Connection::client);
            if (!message) {
                break;
            }
            take(*message);
        }
        act();
    }
    void sendMore(Connection& connection) override { connection.flush(Connection::client); }
    void lost(Connection& connection) override
    {
        if (&connection == way_) {
            if (renewed_ != 0 && renewed_ < renewals_) {
                world_.count(Rare::renewalsLostHalfWay);
            }
            way_ = nullptr;
            lose();
        }
    }

private:
    using State = trs::Subscriptions::State;

    struct Entry {
        enum class Kind { event, gap, gapIsOver };
        Kind kind;
        unsigned key;
        std::uint64_t value;
        std::uint64_t generation;
    };
    // An object as the program sees it.
    struct View {
        std::uint64_t generation = 0; // of what is told: what is older was for those who have left
        unsigned users = 0;
        unsigned registrations = 0; // users, and who waits to be one
        bool isInGap = false;
        bool mayMiss = false; // what was before the newest that was known then
        std::uint64_t known = 0;
        std::uint64_t last = 0;
    };
    struct Waiting {
        unsigned key;
        Time due;
    };
    static constexpr std::size_t capacity = 20;

    trs::TimeAndChance timing()
    {
        trs::TimeAndChance timing;
        timing.now = [this] { return clockTime(world_.now()); };
        timing.date = [this] { return date(); };
        timing.random = [this](std::uint64_t most) { return world_.random.upTo(most); };
        return timing;
    }
    trs::TimeAndChance::Date date() const
    {
        // It leaps in the middle of things.
        Time const leap = world_.now() / second % 2 != 0 ? world_.weather.clock : 0;
        return trs::TimeAndChance::Date(std::chrono::microseconds(world_.now() + leap));
    }

    void act()
    {
        auto const attempt = subscriptions_->attemptAt();
        if (way_ != nullptr || dialer_.isDialing() || !attempt) {
            return;
        }
        Time const at = worldTime(*attempt);
        if (at > world_.now()) {
            if (!timer_ || at < *timer_) {
                timer_ = at;
                world_.after(at - world_.now(), [this] {
                    timer_.reset();
                    act();
                });
            }
            return;
        }
        dialer_.dial(*this, [this](Connection* connection) {
            way_ = connection;
            way_ != nullptr ? begin() : lose();
        });
    }
    void begin()
    {
        renewals_ = renewed_ = 0;
        for (auto const& message : subscriptions_->begin()) {
            renewals_ += message.kind == trs::Subscriptions::Message::Kind::renew ? 1 : 0;
            send(message);
        }
    }
    void send(trs::Subscriptions::Message const& message)
    {
        using Asked = trs::Subscriptions::Message::Kind;
        Message::Kind const kind = message.kind == Asked::subscribe ? Message::Kind::subscribe
                                   : message.kind == Asked::renew   ? Message::Kind::renew
                                                                    : Message::Kind::unsubscribe;
        way_->send(Connection::client, {kind, message.key.opIndex, message.number, 0, 40});
    }
    void lose()
    {
        put(subscriptions_->lose(date()));
        isInGap_ = subscriptions_->hasGaps();
        settle();
        act();
    }
    void take(Message const& message)
    {
        world_.note("peer says", static_cast<std::uint64_t>(message.kind) << 8 | message.key, message.value);
        if (message.kind != Message::Kind::event) {
            renewed_ += 1;
            put(subscriptions_->confirm(message.number, message.kind == Message::Kind::confirmed));
            isInGap_ = subscriptions_->hasGaps();
            if (message.kind == Message::Kind::noObject) {
                world_.count(Rare::objectMissing);
            }
            settle();
            return;
        }
        if (isInGap_) {
            auto const over = subscriptions_->notice(keys_[message.key].view());
            if (!over.empty()) {
                world_.count(Rare::eventBeforeAllRenewed);
            }
            put(over);
            isInGap_ = subscriptions_->hasGaps();
        }
        put({Entry::Kind::event, message.key, message.value, views_[message.key].generation});
    }
    // Those whose answer is there, or who have waited long enough.
    void settle()
    {
        for (std::size_t i = 0; i < waiting_.size();) {
            auto const [key, due] = waiting_[i];
            State const state = subscriptions_->state(keys_[key]);
            if (state == State::asked && world_.now() < due) {
                ++i;
                continue;
            }
            waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(i));
            if (state == State::confirmed) {
                View& view = views_[key];
                if (view.users++ == 0) {
                    view.mayMiss = true;
                    view.known = server_.versions[key];
                    ++view.generation;
                }
            } else {
                if (state == State::asked) {
                    world_.count(Rare::subscriptionTimedOut);
                }
                leave(key);
            }
        }
    }
    void leave(unsigned key)
    {
        if (auto const message = subscriptions_->remove(keys_[key])) {
            send(*message);
        }
        View& view = views_[key];
        if (--view.registrations == 0) {
            view = {view.generation + 1};
        }
    }

    void put(trs::Subscriptions::Gaps const& gaps)
    {
        for (auto const& gap : gaps) {
            for (auto const& operation : gap.operations) {
                unsigned const key = operation.opIndex;
                world_.note(gap.until ? "gap is over" : "gap", key);
                world_.claim(!gap.until || (way_ != nullptr && (way_->known >> key & 1) != 0),
                             "a gap is over before the peer knows of the subscription", key);
                put({gap.until ? Entry::Kind::gapIsOver : Entry::Kind::gap, key, 0, views_[key].generation});
            }
        }
    }
    void put(Entry const& entry)
    {
        inbox_.push_back(entry);
        if (inbox_.size() >= capacity && !std::exchange(isFull_, true)) {
            world_.count(Rare::inboxFull);
        }
        if (!std::exchange(isDelivering_, true)) {
            deliverSoon();
        }
    }
    void deliverSoon()
    {
        Time const time = world_.random.happens(world_.weather.stall) ? second : millisecond;
        world_.after(world_.random.between(10, time), [this] {
            isDelivering_ = false;
            for (std::size_t left = 4; left != 0 && !inbox_.empty(); --left) {
                Entry const entry = inbox_.front();
                inbox_.pop_front();
                tell(entry);
            }
            if (isFull_ && inbox_.size() <= capacity / 2) {
                isFull_ = false;
                if (way_ != nullptr) {
                    receive(*way_);
                }
            }
            if (!inbox_.empty() && !std::exchange(isDelivering_, true)) {
                deliverSoon();
            }
        });
    }
    // The program is told.
    void tell(Entry const& entry)
    {
        View& view = views_[entry.key];
        if (entry.generation != view.generation || view.users == 0) {
            return;
        }
        switch (entry.kind) {
        case Entry::Kind::event:
            world_.claim(!view.isInGap, "an event is told before the end of its gap", entry.key);
            world_.claim(entry.value > view.last, "an event is told twice or late", entry.key);
            world_.claim(view.mayMiss ? entry.value <= view.known + 1 : entry.value == view.last + 1,
                         "an event is missing without a gap", entry.key);
            view.mayMiss = false;
            view.last = entry.value;
            break;
        case Entry::Kind::gap:
            world_.claim(!view.isInGap, "a gap begins in one", entry.key);
            view.isInGap = true;
            world_.count(Rare::gapTold);
            break;
        case Entry::Kind::gapIsOver:
            world_.claim(view.isInGap, "a gap is over that has not begun", entry.key);
            view.isInGap = false;
            view.mayMiss = true;
            view.known = server_.versions[entry.key];
        }
    }

    World& world_;
    ModelServer& server_;
    Dialer dialer_;
    std::vector<trs::OperationKey> keys_;
    std::optional<trs::Subscriptions> subscriptions_;
    Connection* way_ = nullptr;
    bool isInGap_ = false;
    std::array<View, objectCount> views_;
    std::vector<Waiting> waiting_;
    std::deque<Entry> inbox_;
    bool isFull_ = false;
    bool isDelivering_ = false;
    std::size_t renewals_ = 0;
    std::size_t renewed_ = 0;
    std::optional<Time> timer_;
};

} // namespace simulation
