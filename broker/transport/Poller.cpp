#include "broker/transport/Poller.h"

#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace trs {

namespace {

constexpr Poller::Number alarmNumber = 0;
constexpr std::size_t mostAtOnce = 256;

void discardAlarm(int alarm)
{
    std::uint64_t count = 0;
    [[maybe_unused]] ssize_t const length = ::read(alarm, &count, sizeof count);
}

} // namespace

Poller::Poller(Tells tells, Waits waits) : tells_(tells), waits_(waits), set_(::epoll_create1(EPOLL_CLOEXEC))
{
    alarm_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = alarmNumber;
    if (set_ < 0 || alarm_ < 0 || ::epoll_ctl(set_, EPOLL_CTL_ADD, alarm_, &event) != 0) {
        complaint_ = LogMakeString("connections cannot be waited for: %s", std::strerror(errno));
    }
}

Poller::~Poller()
{
    for (int const descriptor : {set_, alarm_}) {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
}

Poller::Number Poller::add(std::shared_ptr<Watcher> watcher)
{
    std::lock_guard const lock(mutex_);
    entries_.emplace(++last_, Entry{std::move(watcher), nothing, {}});
    return last_;
}

void Poller::remove(Number number)
{
    setTimer(number, std::nullopt);
    std::shared_ptr<Watcher> removed; // whose end may want the lock
    std::lock_guard const lock(mutex_);
    auto const place = entries_.find(number);
    if (place != entries_.end()) {
        removed = std::move(place->second.watcher);
        entries_.erase(place);
    }
}

void Poller::setTimer(Number number, std::optional<Clock::time_point> time)
{
    std::lock_guard const lock(mutex_);
    auto const place = entries_.find(number);
    if (place == entries_.end()) {
        return;
    }
    std::optional<Clock::time_point>& present = place->second.time;
    if (present) {
        auto [first, last] = times_.equal_range(*present);
        times_.erase(std::find_if(first, last, [number](auto const& entry) { return entry.second == number; }));
    }
    present = time;
    if (time) {
        times_.emplace(*time, number);
        if (isWaiting_ && *time < waitsUntil_) {
            wake();
        }
    }
}

void Poller::tell(Number number, Events events)
{
    std::lock_guard const lock(mutex_);
    auto const place = entries_.find(number);
    if (place == entries_.end()) {
        return;
    }
    if (place->second.told == nothing) {
        told_.push_back(number);
        wake();
    }
    place->second.told |= events;
}

// Under the lock.
void Poller::wake()
{
    if (isWaiting_ && !isWoken_) {
        isWoken_ = true;
        std::uint64_t const one = 1;
        [[maybe_unused]] ssize_t const length = ::write(alarm_, &one, sizeof one);
    }
}

bool Poller::watch(int descriptor, Number number, Events events, bool isFirst)
{
    epoll_event event{};
    event.events = ((events & canReceive) != 0 ? EPOLLIN | EPOLLRDHUP : 0U) |
                   ((events & canSend) != 0 ? unsigned{EPOLLOUT} : 0U) |
                   (tells_ == Tells::once ? unsigned{EPOLLONESHOT} : 0U);
    event.data.u64 = number;
    return ::epoll_ctl(set_, isFirst ? EPOLL_CTL_ADD : EPOLL_CTL_MOD, descriptor, &event) == 0;
}

bool Poller::ignore(int descriptor) { return ::epoll_ctl(set_, EPOLL_CTL_DEL, descriptor, nullptr) == 0; }

// Milliseconds; under the lock.
int Poller::waitTime()
{
    if (!told_.empty() || isStopped_) {
        return 0;
    }
    if (times_.empty()) {
        waitsUntil_ = Clock::time_point::max();
        return -1;
    }
    waitsUntil_ = times_.begin()->first;
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(waitsUntil_ - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, INT_MAX));
}

void Poller::takeTold()
{
    for (Number const number : told_) {
        auto const place = entries_.find(number);
        if (place != entries_.end()) {
            calls_.push_back({place->second.watcher, place->second.told});
            place->second.told = nothing;
        }
    }
    told_.clear();
}

void Poller::takeOver()
{
    if (times_.empty() || times_.begin()->first > Clock::now()) {
        return;
    }
    Clock::time_point const now = Clock::now();
    while (!times_.empty() && times_.begin()->first <= now) {
        Entry& entry = entries_.at(times_.begin()->second);
        entry.time.reset();
        calls_.push_back({entry.watcher, timeIsOver});
        times_.erase(times_.begin());
    }
}

void Poller::takeReady(epoll_event const* ready, int count)
{
    for (int i = 0; i < count; ++i) {
        epoll_event const event = ready[i];
        Number const number = event.data.u64; // which lies anywhere there
        if (number == alarmNumber) {
            discardAlarm(alarm_);
            continue;
        }
        auto const place = entries_.find(number);
        if (place == entries_.end()) {
            continue;
        }
        // An error or the end is found by whatever is done with the channel.
        bool const isOver = (event.events & (EPOLLERR | EPOLLHUP)) != 0;
        Events const events = (isOver || (event.events & (EPOLLIN | EPOLLRDHUP)) != 0 ? canReceive : nothing) |
                              (isOver || (event.events & EPOLLOUT) != 0 ? canSend : nothing);
        calls_.push_back({place->second.watcher, events});
    }
}

int Poller::await(epoll_event* ready, int time)
{
    int count = 0;
    if (time != 0 && waits_ == Waits::awakeFirst &&
        busyWait_.wait([&] { return (count = ::epoll_wait(set_, ready, mostAtOnce, 0)) > 0; })) {
        return count;
    }
    return ::epoll_wait(set_, ready, mostAtOnce, time);
}

void Poller::run(std::function<void()> const& afterwards)
{
    std::unique_lock lock(mutex_);
    while (!isStopped_) {
        int const time = waitTime();
        isWaiting_ = true;
        lock.unlock();
        std::array<epoll_event, mostAtOnce> ready;
        int const count = await(ready.data(), time);
        lock.lock();
        isWaiting_ = isWoken_ = false;
        takeReady(ready.data(), count);
        takeTold();
        takeOver();
        lock.unlock();
        for (Call const& call : calls_) {
            call.watcher->ready(call.events);
        }
        calls_.clear(); // watchers may end with it, and want the lock
        if (afterwards) {
            afterwards();
        }
        lock.lock();
    }
    isStopped_ = false;
}

void Poller::stop()
{
    std::lock_guard const lock(mutex_);
    isStopped_ = true;
    wake();
}

} // namespace trs
