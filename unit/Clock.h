// The time of the simulated unit.
#pragma once

#include <atomic>
#include <functional>
#include <list>

namespace trs::sim {

// Stands still but for advance(), which is called under the run permission. What the unit does as time passes, it does
// there.
class Clock {
public:
    using Listener = std::function<void(unsigned long seconds)>;

    // Has `listener` told of every advance from construction to destruction.
    class Subscription {
    public:
        Subscription(Clock& clock, Listener listener);
        Subscription(Subscription const&) = delete;
        Subscription& operator=(Subscription const&) = delete;
        ~Subscription();

    private:
        Clock& clock_;
        std::list<Listener>::iterator const place_;
    };

    // Seconds since the unit began; may be asked by any thread.
    unsigned long now() const { return now_; }
    void advance(unsigned long seconds);

private:
    std::atomic<unsigned long> now_ = 0;
    std::list<Listener> listeners_;
};

} // namespace trs::sim
