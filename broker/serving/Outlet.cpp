#include "broker/serving/Outlet.h"

#include <chrono>
#include <utility>

namespace trs {

namespace {

constexpr std::size_t fullQueue = std::size_t{1024} * 1024; // bytes

} // namespace

Outlet::Answer::~Answer()
{
    if (hasTurn_) [[unlikely]] {
        outlet_.giveTurn();
    }
}

bool Outlet::Answer::send(unsigned char const* bytes, std::size_t length)
{
    Deadline deadline;
    if (outlet_.isShared_ && !hasTurn_) [[unlikely]] {
        hasTurn_ = outlet_.takeTurn(deadline);
        if (!hasTurn_) {
            return false;
        }
    }
    if (outlet_.connection_.send(bytes, length, deadline) == Connection::Sent::all) [[likely]] {
        return true;
    }
    if (deadline.remaining() == 0) {
        outlet_.log_.tell(4, outlet_.begin_ + "a reply was not taken in time");
    }
    outlet_.abandon();
    return false;
}

bool Outlet::takeTurn(Deadline const& deadline)
{
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::milliseconds(deadline.remaining()), [this] { return !isSending_ || isLost_; });
    if (isLost_) {
        return false;
    }
    if (isSending_) {
        lose("a reply was not taken in time");
        return false;
    }
    isSending_ = true;
    if (queue_.empty() || sendQueue(lock)) {
        return true;
    }
    isSending_ = false;
    return false;
}

void Outlet::giveTurn()
{
    std::lock_guard const lock(mutex_);
    isSending_ = false;
    if (!queue_.empty()) {
        changed_.notify_all();
    }
}

void Outlet::send(TipprmiStream const& notification)
{
    std::lock_guard const lock(mutex_);
    if (isLost_ || isClosed_) {
        ++lost_;
        return;
    }
    std::size_t taken = 0;
    if (queue_.empty() && !isSending_) {
        taken = connection_.sendSome(notification);
        if (taken == notification.size()) [[likely]] {
            return;
        }
    }
    if (queue_.size() > fullQueue) {
        lose("it lets too many notifications wait");
    } else if (!drainer_.isStarted() && !drainer_.start([this] { drain(); })) {
        lose("no thread could be started for its notifications");
    }
    if (isLost_) {
        ++lost_;
        return;
    }
    queue_.insert(queue_.end(), notification.data() + taken, notification.data() + notification.size());
    ++waiting_;
    changed_.notify_all();
}

// By whoever has the turn.
bool Outlet::sendQueue(std::unique_lock<std::mutex>& lock)
{
    std::vector<unsigned char> batch;
    batch.swap(queue_);
    std::size_t const count = std::exchange(waiting_, 0);
    lock.unlock();
    Deadline deadline;
    bool const isSent = connection_.send(batch.data(), batch.size(), deadline) == Connection::Sent::all;
    bool const isLate = !isSent && deadline.remaining() == 0;
    lock.lock();
    if (isLate) {
        lose("it takes no notification");
    } else if (!isSent) {
        lose("");
    }
    lost_ += isSent ? 0 : count;
    return isSent;
}

void Outlet::drain()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return isClosed_ || (!queue_.empty() && !isSending_ && !isLost_); });
        if (isClosed_) {
            return;
        }
        isSending_ = true;
        sendQueue(lock);
        isSending_ = false;
        changed_.notify_all(); // an answer may wait for its turn
    }
}

// The first reason counts; none when the client has gone by itself. The handler thread does the rest.
void Outlet::lose(char const* why)
{
    if (!isLost_) {
        isLost_ = true;
        why_ = why;
        connection_.shutDown();
        changed_.notify_all();
    }
}

void Outlet::abandon()
{
    std::lock_guard const lock(mutex_);
    lose("");
}

void Outlet::close()
{
    {
        std::lock_guard const lock(mutex_);
        isClosed_ = true;
        connection_.shutDown();
        changed_.notify_all();
    }
    drainer_.join();
    std::lock_guard const lock(mutex_); // somebody may be notifying still
    if (!why_.empty()) {
        log_.tell(4, begin_ + why_, ", " + std::to_string(lost_ + waiting_) + " notifications are lost");
    }
}

} // namespace trs
