// What the engine is to do at a time, or as soon as it can, besides what its links tell it.
#pragma once

#include "broker/transport/Poller.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace trs {

class Alarms final : public Poller::Watcher {
public:
    using Time = Poller::Clock::time_point;
    using Act = std::function<void()>;

    // For the engine, which need not run yet.
    static Alarms& instance();

    // From any thread. `act` is called on the engine's thread, without any lock.
    void post(Act act);
    // The same at that time or later, perhaps more than once, until it is taken back.
    class Alarm {
    public:
        Alarm() = default;
        Alarm(Alarm const&) = delete;
        Alarm& operator=(Alarm const&) = delete;
        ~Alarm() { takeBack(); }
        void set(Time time, Act act);
        void takeBack();

    private:
        bool isSet_ = false;
        std::multimap<Time, Act>::iterator place_;
    };

    void ready(Poller::Events events) override;

private:
    friend class Alarm;
    Alarms() = default;

    std::mutex mutex_;
    Poller::Number number_ = 0;
    std::vector<Act> now_;
    std::multimap<Time, Act> later_;
};

} // namespace trs
