#include "broker/objects/LocalNotifier.h"

#include "broker/Broker.h"
#include "broker/objects/RunPermission.h"
#include "platform/NmaLogHelper.h"

namespace trs {

// Never destroyed: objects with static storage notify to the end.
LocalNotifier& LocalNotifier::instance()
{
    static LocalNotifier& notifier = *new LocalNotifier;
    return notifier;
}

void LocalNotifier::post(OperationKey const& key, TipprmiSequence<TipprmiAny> const& parameters)
{
    // An observer that registers before the delivery, but after the execution, is not to be told.
    ObserverTable::Serial const newest = ObserverTable::instance().newest();
    Broker::instance(); // stops the thread when the process ends
    std::lock_guard const lock(mutex_);
    if (isStopping_) {
        return;
    }
    if (!isRunning_ && !(isRunning_ = thread_.start([this] { run(); }))) {
        LogDispatch(3, "no thread could be started to tell observers");
        return;
    }
    queue_.push_back({key, parameters, newest});
    changed_.notify_one();
}

void LocalNotifier::run()
{
    becomeHandlerThread();
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return isStopping_ || !queue_.empty(); });
        if (isStopping_) {
            return;
        }
        Notification notification = std::move(queue_.front());
        queue_.pop_front();
        lock.unlock();
        ObserverTable::instance().deliver(nullptr, notification.key.view(), notification.parameters,
                                          notification.newest);
        lock.lock();
    }
}

void LocalNotifier::stop()
{
    {
        std::lock_guard const lock(mutex_);
        isStopping_ = true;
        changed_.notify_one();
    }
    {
        RunPermissionPause const waiting;
        thread_.join();
    }
    std::lock_guard const lock(mutex_);
    queue_.clear();
    isRunning_ = isStopping_ = false;
}

} // namespace trs
