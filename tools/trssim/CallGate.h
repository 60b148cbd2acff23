// Where calls from outside pass on their way into the simulated unit and back.
#pragma once

#include "platform/host/ServerTap.h"
#include "tools/trssim/CallLog.h"
#include "tools/trssim/FaultPlan.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace sim {

// Answers calls badly as the plan says, counts and logs them.
class CallGate final : public host::ServerTap {
public:
    // `unitTime` tells the unit's time in seconds, on any thread. All outlive the gate.
    CallGate(FaultPlan& plan, CallLog& log, std::function<unsigned long()> unitTime)
        : plan_(plan), log_(log), unitTime_(std::move(unitTime))
    {
    }

    std::unique_ptr<host::TappedCall> begin(host::ObjectAddress const& address, TipprmiStream const& request) override;

    unsigned long count() const { return count_; }
    // Ends the waiting of calls that are delayed, now and for good.
    void end();

private:
    class Call;
    void wait(std::chrono::milliseconds duration);

    FaultPlan& plan_;
    CallLog& log_;
    std::function<unsigned long()> unitTime_;
    std::atomic<unsigned long> count_ = 0;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool isEnded_ = false;
};

} // namespace sim
