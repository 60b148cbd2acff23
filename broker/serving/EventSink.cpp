#include "broker/serving/EventSink.h"

namespace trs {

namespace {

constexpr std::size_t fullQueue = std::size_t{1024} * 1024; // bytes

} // namespace

void EventSink::send(TipprmiStream const& message)
{
    std::lock_guard const lock(mutex_);
    if (connection_ == nullptr) {
        return;
    }
    std::size_t taken = 0;
    if (queue_.empty() && !isDraining_) {
        taken = connection_->sendSome(message);
        if (taken == message.size()) [[likely]] {
            return;
        }
    }
    bool const isFull = queue_.size() > fullQueue;
    if (isFull || (!drainer_.isStarted() && !drainer_.start([this] { drain(); }))) {
        connection_->shutDown(); // its handler thread does the rest
        return;
    }
    queue_.insert(queue_.end(), message.data() + taken, message.data() + message.size());
    changed_.notify_one();
}

void EventSink::drain()
{
    std::vector<unsigned char> batch;
    std::unique_lock lock(mutex_);
    for (;;) {
        isDraining_ = false;
        changed_.wait(lock, [this] { return connection_ == nullptr || !queue_.empty(); });
        if (connection_ == nullptr) {
            return;
        }
        Connection& connection = *connection_; // stays until close() has joined this thread
        batch.clear();
        batch.swap(queue_);
        isDraining_ = true;
        lock.unlock();
        Deadline deadline;
        if (connection.send(batch.data(), batch.size(), deadline) != Connection::Sent::all) {
            connection.shutDown();
        }
        lock.lock();
    }
}

void EventSink::close()
{
    {
        std::lock_guard const lock(mutex_);
        connection_->shutDown();
        connection_ = nullptr;
        changed_.notify_one();
    }
    drainer_.join();
}

} // namespace trs
