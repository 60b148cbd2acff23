#include "bench/support/BenchCondition.h"

namespace {

class BenchCondition final : public ConditionSkeleton {
public:
    long getCurrentSeverity() override { return 0; }
    long getDefaultSeverity() override { return 0; }
    long getPriority() override { return priority_; }
    bool getReportToExtern() override { return false; }
    bool disablesOperState() override { return false; }
    bool isActive() override { return false; }
    bool isSuppressed() override { return false; }
    bool isReportedToExtern() override { return false; }
    ResponseInfo<RunClient> addToGroup(FaultServiceClient const&) override { return RunClient::FAILED; }
    ResponseInfo<RunClient> removeFromGroup() override { return RunClient::FAILED; }
    ResponseInfo<RunClient> activateWithoutGroup() override { return RunClient::FAILED; }
    ResponseInfo<RunClient> deactivateWithoutGroup() override { return RunClient::FAILED; }
    ResponseInfo<RunClient> raise() override { return RunClient::FAILED; }
    ResponseInfo<RunClient> cancel() override { return RunClient::FAILED; }
    void setCurrentSeverity(long const&) override {}
    void setDefaultSeverity(long const&) override {}
    void resetCurrentSeverity() override {}
    void setReportToExtern(bool const&) override {}
    void setPriority(long const& priority) override { priority_ = priority; }
    ResponseInfo<RunClient> suppress() override { return RunClient::FAILED; }
    ResponseInfo<RunClient> unsuppress() override { return RunClient::FAILED; }

private:
    long priority_ = ConditionClient::STANDARD_PRIORITY;
};

} // namespace

ConditionSkeleton& bench::condition()
{
    static BenchCondition object;
    return object;
}

ConditionClient const& bench::conditionProxy()
{
    static ConditionClient const proxy(&condition());
    return proxy;
}
