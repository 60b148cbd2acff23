// Tells the observers of this process of executions of its own objects.
#pragma once

#include "broker/framing/OperationKey.h"
#include "broker/machine/Thread.h"
#include "broker/objects/ObserverTable.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace trs {

// On a handler thread, which is started with the first notification: the executing thread may be in the middle of
// something.
class LocalNotifier {
public:
    static LocalNotifier& instance();

    void post(OperationKey const& key, TipprmiSequence<TipprmiAny> const& parameters);
    // Ends the thread and drops what it has not delivered; the next notification starts it again. Gives the run
    // permission back meanwhile.
    void stop();

private:
    struct Notification {
        OperationKey key;
        TipprmiSequence<TipprmiAny> parameters;
        ObserverTable::Serial newest;
    };

    LocalNotifier() = default;
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Notification> queue_;
    bool isRunning_ = false;
    bool isStopping_ = false;
    Thread thread_;
};

} // namespace trs
