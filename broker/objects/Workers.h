// Handler threads that take tasks as they come.
#pragma once

#include "broker/machine/Thread.h"
#include "broker/objects/WorkerCount.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <memory>
#include <mutex>

namespace trs {

// First come, first served, by as many threads as there is work for. One that waits in the middle of a task, having
// given the run permission back, is replaced by another: tasks that wait for each other, here and in other processes,
// come to their end. A thread that finds nothing to do for some seconds ends.
class Workers {
public:
    using Limits = WorkerCount::Limits;

    class Task {
    public:
        Task() = default;
        Task(Task const&) = delete;
        Task& operator=(Task const&) = delete;
        virtual ~Task() = default;

        // On a worker, without the run permission.
        virtual void run() = 0;
        // It was queued, and there will be no worker for it: all wait in the middle of tasks, or there are none any
        // more. On any thread.
        virtual void refuse() = 0;
        // The worker is about to wait in the middle of run().
        virtual void pause() {}
    };

    explicit Workers(Limits const& limits = {}, std::chrono::milliseconds rest = std::chrono::seconds(5));
    Workers(Workers const&) = delete;
    Workers& operator=(Workers const&) = delete;
    ~Workers();

    // Waits for the tasks that run, and refuses those that do not, now and later.
    void stop();

    // False when no worker is there for it nor will be.
    bool submit(std::shared_ptr<Task> task);
    // Whether tasks wait for which no worker is free.
    bool isShort() const { return isShort_.load(std::memory_order_relaxed); }
    // On a worker: whether it may wait for a moment for more of what its task is about. It counts as free then, until
    // the task ends or waits for something else.
    bool stay();

    // As they are at the moment.
    struct Numbers {
        std::size_t threads;
        std::size_t queued;
        std::size_t executing;
        std::size_t waiting; // having given the run permission back
    };
    Numbers numbers() const;

private:
    class Worker;
    friend class Worker;

    void employ();
    void joinGone(std::unique_lock<std::mutex>& lock);
    void work(Worker& self);
    void runNext(Worker& self, std::unique_lock<std::mutex>& lock);
    void beginWait(Worker& self);
    void endWait();
    void endStay(Worker& self);
    void noteShort() { isShort_.store(count_.isShort(), std::memory_order_relaxed); }
    void refuseAll(std::unique_lock<std::mutex>& lock);

    std::chrono::milliseconds const rest_;
    mutable std::mutex mutex_;
    std::condition_variable queuedOrEnding_;
    std::condition_variable ended_; // a worker has
    WorkerCount count_;
    std::atomic<bool> isShort_ = false;
    std::deque<std::shared_ptr<Task>> tasks_;
    std::list<std::unique_ptr<Worker>> workers_;
    std::list<std::unique_ptr<Worker>> gone_; // to be joined
    bool isEnding_ = false;
};

} // namespace trs
