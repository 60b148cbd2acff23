#include "broker/calls/Alarms.h"

#include "broker/calls/Engine.h"

#include <utility>

namespace trs {

// Never destroyed, as the engine is not.
Alarms& Alarms::instance()
{
    static Alarms& alarms = []() -> Alarms& {
        std::shared_ptr<Alarms> const made(new Alarms);
        made->number_ = Engine::instance().poller().add(made);
        return *made;
    }();
    return alarms;
}

void Alarms::post(Act act)
{
    std::lock_guard const lock(mutex_);
    now_.push_back(std::move(act));
    Engine::instance().poller().tell(number_);
}

void Alarms::Alarm::set(Time time, Act act)
{
    Alarms& alarms = instance();
    std::lock_guard const lock(alarms.mutex_);
    place_ = alarms.later_.emplace(time, std::move(act));
    isSet_ = true;
    if (place_ == alarms.later_.begin()) {
        Engine::instance().poller().setTimer(alarms.number_, time);
    }
}

void Alarms::Alarm::takeBack()
{
    Act unneeded; // whose end may want the lock
    Alarms& alarms = instance();
    std::lock_guard const lock(alarms.mutex_);
    if (isSet_) {
        unneeded = std::move(place_->second);
        alarms.later_.erase(place_);
        isSet_ = false;
    }
}

void Alarms::ready(Poller::Events)
{
    std::unique_lock lock(mutex_);
    std::vector<Act> acts = std::exchange(now_, {});
    Time const now = Poller::Clock::now();
    for (auto const& [time, act] : later_) { // who set it takes it back
        if (time > now) {
            Engine::instance().poller().setTimer(number_, time);
            break;
        }
        acts.push_back(act);
    }
    lock.unlock();
    for (Act const& act : acts) {
        act();
    }
}

} // namespace trs
