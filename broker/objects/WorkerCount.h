// How many workers there are and what they are doing, and what follows from that: without threads.
#pragma once

#include <cstddef>

namespace trs {

// A worker rests, which includes that it has been called and is on its way to a task, or has a task. With a task it
// executes, but for the times in which it waits for another process, or stays with a client that may ask again in a
// moment. Tasks wait in a queue while none is free for them.
class WorkerCount {
public:
    struct Limits {
        std::size_t executing = 64; // beyond which tasks wait for others to end
        std::size_t threads = 256;  // at all
        std::size_t staying = 16;
    };

    explicit WorkerCount(Limits limits) : limits_(limits) {}

    // What happens.
    void queue() { ++queued_; }
    void unqueue(std::size_t count) { queued_ -= count; }
    void start()
    {
        ++threads_;
        ++resting_;
    }
    void end()
    {
        --threads_;
        --resting_;
    }
    void take()
    {
        --queued_;
        --resting_;
    }
    void finish() { ++resting_; }
    void beginWait() { ++waiting_; }
    void endWait() { --waiting_; }
    void beginStay() { ++staying_; }
    void endStay() { --staying_; }

    // What follows. Who comes back from waiting goes on, so that more may execute than are let begin.
    bool mayTake() const { return queued_ != 0 && executing() < limits_.executing; }
    bool wantsAnother() const
    {
        return isShort() && executing() + resting_ < limits_.executing && threads_ < limits_.threads;
    }
    // Whether tasks wait for which nobody is free.
    bool isShort() const { return queued_ > resting_; }
    // Whether what is queued is taken some time, however long those wait that do.
    bool hasProspect() const { return waiting_ < threads_; }
    bool mayStay() const { return !isShort() && staying_ < limits_.staying; }

    std::size_t queued() const { return queued_; }
    std::size_t threads() const { return threads_; }
    std::size_t resting() const { return resting_; }
    std::size_t waiting() const { return waiting_; }
    std::size_t executing() const { return threads_ - resting_ - waiting_ - staying_; }

private:
    Limits const limits_;
    std::size_t queued_ = 0;
    std::size_t threads_ = 0;
    std::size_t resting_ = 0;
    std::size_t waiting_ = 0;
    std::size_t staying_ = 0;
};

} // namespace trs
