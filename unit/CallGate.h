// Where calls pass on their way into the simulated unit and back.
#pragma once

#include "broker/ServerTap.h"
#include "unit/CallLog.h"
#include "unit/MisbehaviourPlan.h"

#include <atomic>
#include <functional>

namespace trs::sim {

// Answers calls badly as the plan says, counts and logs them.
class CallGate final : public ServerTap {
public:
    // `unitTime` tells the unit's time in seconds, and `keep` has what was changed kept before it is told: false when
    // it cannot, and then there is no answer. Both on any thread. All outlive the gate.
    CallGate(MisbehaviourPlan& plan, CallLog& log, std::function<unsigned long()> unitTime, std::function<bool()> keep)
        : plan_(plan), log_(log), unitTime_(std::move(unitTime)), keep_(std::move(keep))
    {
    }

    std::unique_ptr<TappedCall> begin(ObjectAddress const& address, TipprmiStream const& request) override;

    unsigned long count() const { return count_; }
    // From now on no call is delayed.
    void end() { isEnded_ = true; }

private:
    class Call;

    MisbehaviourPlan& plan_;
    CallLog& log_;
    std::function<unsigned long()> unitTime_;
    std::function<bool()> keep_;
    std::atomic<unsigned long> count_ = 0;
    std::atomic<bool> isEnded_ = false;
};

} // namespace trs::sim
