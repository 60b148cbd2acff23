// Waits for many channels at once.
#pragma once

#include "broker/machine/BusyWait.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

struct epoll_event;

namespace trs {

// One thread runs it; everything else may be called from any. Whoever is told of something is known by a number, which
// is never used again, and is kept until it is removed and any call of it has returned: no removal waits.
class Poller {
public:
    using Clock = std::chrono::steady_clock;
    using Number = std::uint64_t;
    // What somebody is told of, and asks to be told of; any of them together.
    using Events = unsigned;
    static constexpr Events nothing = 0;
    static constexpr Events canReceive = 1; // or the channel has ended, which receiving tells
    static constexpr Events canSend = 2;
    static constexpr Events timeIsOver = 4;
    static constexpr Events isCalled = 8;

    class Watcher {
    public:
        virtual ~Watcher() = default;
        // On the poller's thread, which waits for nothing here. May come once more after the removal.
        virtual void ready(Events events) = 0;
    };
    // Whether a channel is told of once for each time that it was asked for, or as long as it is ready.
    enum class Tells { once, always };
    // Whether it waits awake for a short time before it sleeps (BusyWait).
    enum class Waits { asleep, awakeFirst };

    explicit Poller(Tells tells, Waits waits = Waits::asleep);
    Poller(Poller const&) = delete;
    Poller& operator=(Poller const&) = delete;
    // Nobody runs it any more, and it watches no channel.
    ~Poller();

    // Empty, or why the system lets none be made.
    std::string const& complaint() const { return complaint_; }
    bool tellsAlways() const { return tells_ == Tells::always; }

    Number add(std::shared_ptr<Watcher> watcher);
    // Its channel must not be watched any more, or be destroyed.
    void remove(Number number);
    // Has the watcher told at that time, unless another time, or none, is set before.
    void setTimer(Number number, std::optional<Clock::time_point> time);
    // Has the watcher told that it is called, or of what a channel knows.
    void tell(Number number, Events events = isCalled);

    // Returns after stop(), which may come first. Whenever all that was ready has been told, calls `afterwards`.
    void run(std::function<void()> const& afterwards = {});
    void stop();

    // For channels. The descriptor's closing ends it. False when the system lets it not be watched.
    bool watch(int descriptor, Number number, Events events, bool isFirst);
    bool ignore(int descriptor);

private:
    struct Entry {
        std::shared_ptr<Watcher> watcher;
        Events told = nothing; // and not yet taken
        std::optional<Clock::time_point> time;
    };
    struct Call {
        std::shared_ptr<Watcher> watcher;
        Events events;
    };

    void wake();
    int await(epoll_event* ready, int time);
    int waitTime();
    void takeTold();
    void takeOver();
    void takeReady(epoll_event const* ready, int count);

    Tells const tells_;
    Waits const waits_;
    std::string complaint_;
    int set_ = -1;   // of epoll
    int alarm_ = -1; // an eventfd
    std::mutex mutex_;
    std::unordered_map<Number, Entry> entries_;
    std::multimap<Clock::time_point, Number> times_;
    std::vector<Number> told_;
    Number last_ = 0;
    Clock::time_point waitsUntil_ = Clock::time_point::min();
    bool isWaiting_ = false;
    bool isWoken_ = false;
    bool isStopped_ = false;
    // The running thread's own.
    BusyWait busyWait_;
    std::vector<Call> calls_;
};

} // namespace trs
