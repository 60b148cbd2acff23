// Something of the simulated unit that others may depend on has changed, and they are to look at it.
#pragma once

#include <functional>
#include <list>

namespace trs::sim {

// Used under the run permission. Listeners may cause the signal to be given again while they are called.
class Signal {
public:
    using Listener = std::function<void()>;

    // Has `listener` called from construction to destruction.
    class Subscription {
    public:
        Subscription(Signal& signal, Listener listener)
            : signal_(signal), place_(signal.listeners_.insert(signal.listeners_.end(), std::move(listener)))
        {
        }
        Subscription(Subscription const&) = delete;
        Subscription& operator=(Subscription const&) = delete;
        ~Subscription() { signal_.listeners_.erase(place_); }

    private:
        Signal& signal_;
        std::list<Listener>::iterator const place_;
    };

    void give() const
    {
        for (Listener const& listener : listeners_) {
            listener();
        }
    }

private:
    std::list<Listener> listeners_;
};

} // namespace trs::sim
