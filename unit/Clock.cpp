#include "unit/Clock.h"

#include <utility>

namespace trs::sim {

Clock::Subscription::Subscription(Clock& clock, Listener listener)
    : clock_(clock), place_(clock.listeners_.insert(clock.listeners_.end(), std::move(listener)))
{
}

Clock::Subscription::~Subscription() { clock_.listeners_.erase(place_); }

void Clock::advance(unsigned long seconds)
{
    now_ += seconds;
    for (Listener const& listener : listeners_) {
        listener(seconds);
    }
}

} // namespace trs::sim
