// A world from its beginning to its end.
#pragma once

#include "tests/simulation/Observer.h"

namespace simulation {

struct Outcome {
    std::string failure; // empty: all was well
    std::uint64_t hash;
    Counts counts;
    std::string trace;
};

class Run {
public:
    // `lines` of the trace are wanted.
    static Outcome of(std::uint64_t seed, std::size_t lines = 0) { return Run(seed).live(lines); }

private:
    explicit Run(std::uint64_t seed) : world_(seed), server_(world_)
    {
        for (std::uint64_t i = world_.random.upTo(1) + 1; i != 0; --i) {
            callers_.emplace_back(world_, server_);
            observers_.emplace_back(world_, server_);
        }
    }

    Outcome live(std::size_t lines)
    {
        constexpr Time ills = 5 * second;
        Time const callInterval = world_.random.between(2, 120) * millisecond;
        every(callInterval, ills, [this] { any(callers_).post(false); });
        every(6 * callInterval, ills, [this] { any(callers_).cancel(); });
        every(world_.random.between(50, 600) * millisecond, ills, [this] { any(observers_).subscribe(anyKey()); });
        every(world_.random.between(200, 2000) * millisecond, ills, [this] { any(observers_).unsubscribe(anyKey()); });
        every(world_.random.between(5, 300) * millisecond, ills, [this] { server_.change(anyKey()); });
        if (Time const interval = world_.weather.restartInterval; interval != 0) {
            every(interval, ills, [this] { server_.restart(); });
            every(2 * interval, ills, [this] { any(callers_).restart(); });
            every(2 * interval, ills, [this] { any(observers_).restart(); });
        }
        world_.runUntil(ills);
        world_.weather.heal();
        world_.note("nothing goes wrong any more");
        world_.runUntil(ills + 7 * second); // what had begun ends, and pauses pass
        for (int i = 0; i < 10; ++i) {
            for (Caller& caller : callers_) {
                caller.post(true);
            }
        }
        for (Observer& observer : observers_) {
            for (unsigned key = 0; key < objectCount; ++key) {
                if (!observer.isObserving(key)) {
                    observer.subscribe(key);
                }
            }
        }
        world_.runUntil(ills + 8 * second);
        for (unsigned i = 0; i < 3 * objectCount; ++i) {
            server_.change(i % objectCount);
        }
        world_.runUntil(ills + 12 * second);
        for (Caller& caller : callers_) {
            caller.finish();
        }
        for (Observer& observer : observers_) {
            observer.finish();
        }
        return {world_.failure(), world_.hash(), world_.counts, lines != 0 ? world_.trace(lines) : ""};
    }
    // On average, for as long.
    void every(Time interval, Time end, std::function<void()> act)
    {
        Time const pause = world_.random.between(1, 2 * interval);
        if (world_.now() + pause < end) {
            world_.after(pause, [this, interval, end, act = std::move(act)] {
                act();
                every(interval, end, act);
            });
        }
    }
    template <class T>
    T& any(std::deque<T>& all)
    {
        return all[world_.random.upTo(all.size() - 1)];
    }
    unsigned anyKey() { return static_cast<unsigned>(world_.random.upTo(objectCount - 1)); }

    World world_;
    ModelServer server_;
    std::deque<Caller> callers_;
    std::deque<Observer> observers_;
};

} // namespace simulation
