#include "broker/objects/Workers.h"

#include "broker/objects/RunPermission.h"

#include <utility>

namespace trs {

class Workers::Worker final : public PermissionWaits {
public:
    explicit Worker(Workers& itsPool) : pool(itsPool) {}

    void begin() override { pool.beginWait(*this); }
    void end() override { pool.endWait(); }

    Workers& pool;
    Thread thread;
    Task* task = nullptr; // at hand
    bool isStaying = false;
    static thread_local Worker* current;
};

thread_local Workers::Worker* Workers::Worker::current = nullptr;

Workers::Workers(Limits const& limits, std::chrono::milliseconds rest) : rest_(rest), count_(limits) {}

Workers::~Workers() { stop(); }

void Workers::stop()
{
    std::unique_lock lock(mutex_);
    isEnding_ = true;
    refuseAll(lock);
    queuedOrEnding_.notify_all();
    ended_.wait(lock, [this] { return workers_.empty(); });
    joinGone(lock);
}

bool Workers::submit(std::shared_ptr<Task> task)
{
    std::unique_lock lock(mutex_);
    if (isEnding_) {
        return false;
    }
    tasks_.push_back(std::move(task));
    count_.queue();
    employ();
    bool const isTaken = count_.hasProspect();
    if (!isTaken) {
        tasks_.pop_back();
        count_.unqueue(1);
    }
    noteShort();
    joinGone(lock);
    return isTaken;
}

// Sees to it that somebody takes what is queued, if anybody may.
void Workers::employ()
{
    if (count_.wantsAnother()) {
        Worker& worker = *workers_.emplace_back(std::make_unique<Worker>(*this));
        count_.start();
        if (!worker.thread.start([this, &worker] { work(worker); })) {
            count_.end();
            workers_.pop_back();
        }
    } else if (count_.mayTake()) {
        queuedOrEnding_.notify_one();
    }
}

// They have left the lock for the last time: joining them does not wait for anything.
void Workers::joinGone(std::unique_lock<std::mutex>& lock)
{
    if (!gone_.empty()) {
        std::list<std::unique_ptr<Worker>> gone;
        gone.swap(gone_);
        lock.unlock();
        gone.clear();
        lock.lock();
    }
}

void Workers::work(Worker& self)
{
    becomeHandlerThread();
    watchPermission(&self);
    Worker::current = &self;
    std::unique_lock lock(mutex_);
    bool isWanted = true;
    while (isWanted && !isEnding_) {
        if (count_.mayTake()) {
            runNext(self, lock);
        } else {
            isWanted = queuedOrEnding_.wait_for(lock, rest_, [this] { return count_.mayTake() || isEnding_; });
        }
    }
    count_.end();
    noteShort();
    auto place = workers_.begin();
    while (place->get() != &self) {
        ++place;
    }
    gone_.splice(gone_.end(), workers_, place);
    ended_.notify_all();
}

void Workers::runNext(Worker& self, std::unique_lock<std::mutex>& lock)
{
    std::shared_ptr<Task> task = std::move(tasks_.front());
    tasks_.pop_front();
    count_.take();
    noteShort();
    lock.unlock();
    self.task = task.get();
    task->run();
    self.task = nullptr;
    task.reset(); // which may be its end, and want a lock
    lock.lock();
    endStay(self);
    count_.finish();
    noteShort();
}

bool Workers::stay()
{
    Worker* const self = Worker::current;
    if (self == nullptr || &self->pool != this) {
        return false;
    }
    if (self->isStaying) {
        return !isShort();
    }
    std::lock_guard const lock(mutex_);
    if (!count_.mayStay() || isEnding_) {
        return false;
    }
    self->isStaying = true;
    count_.beginStay();
    return true;
}

// Under the lock.
void Workers::endStay(Worker& self)
{
    if (self.isStaying) {
        self.isStaying = false;
        count_.endStay();
    }
}

void Workers::beginWait(Worker& self)
{
    if (self.task != nullptr) {
        self.task->pause();
    }
    std::unique_lock lock(mutex_);
    endStay(self);
    count_.beginWait();
    employ();
    if (!count_.hasProspect()) {
        refuseAll(lock);
    }
    noteShort();
}

void Workers::endWait()
{
    std::lock_guard const lock(mutex_);
    count_.endWait();
}

void Workers::refuseAll(std::unique_lock<std::mutex>& lock)
{
    std::deque<std::shared_ptr<Task>> refused;
    refused.swap(tasks_);
    count_.unqueue(refused.size());
    noteShort();
    lock.unlock();
    for (std::shared_ptr<Task> const& task : refused) {
        task->refuse();
    }
    refused.clear();
    lock.lock();
}

Workers::Numbers Workers::numbers() const
{
    std::lock_guard const lock(mutex_);
    return {count_.threads(), count_.queued(), count_.executing(), count_.waiting()};
}

} // namespace trs
