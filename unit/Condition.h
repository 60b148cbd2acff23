// A condition of the simulated object: what ConditionClient reaches.
#pragma once

#include "clients/services/ConditionClient.h"
#include "unit/Object.h"

#include <string>

namespace trs::sim {

class FaultService;

// Begins inactive and as a member of its fault service's group. What happens to it is said, and reported to the fault
// service as long as it is a member.
class Condition {
public:
    // What one kind of condition has from the start.
    struct Kind {
        std::string name;
        std::string meaning;
        long severity;
        bool disablesOperState;
    };

    // `service` must outlive it.
    Condition(Inventory& inventory, Kind const& kind, std::string const& owner, FaultService& service);
    Condition(Condition const&) = delete;
    Condition& operator=(Condition const&) = delete;

    std::string name() const { return kind_.name; }
    bool isActive() const { return isActive_; }
    bool isSuppressed() const { return isSuppressed_; }
    bool isMember() const { return isMember_; }
    // Whether the group was told last that it is active.
    bool isReported() const { return isReported_; }
    void setReported(bool isReported);
    bool disablesOperState() const { return kind_.disablesOperState; }
    auto proxy() const { return object_.proxy<ConditionClient>(); }
    // Name, state and attributes in one line.
    std::string text() const;

    void raise();
    void cancel();
    void suppress();
    void unsuppress();
    bool join();
    bool leave();

private:
    void serveAttributes();
    void serveState();
    void serveGroup();
    void hold();
    void setActive(bool active);
    void setSuppressed(bool suppressed);
    void report(FaultServiceClient::ConditionNotification event);
    bool isReportedToExtern() const;

    Kind const kind_;
    FaultService& service_;
    bool isMember_ = true;
    bool isActive_ = false;
    bool isReported_ = false;
    bool isSuppressed_ = false;
    bool reportsToExtern_ = true;
    long currentSeverity_ = kind_.severity;
    long defaultSeverity_ = kind_.severity;
    long priority_ = ConditionClient::STANDARD_PRIORITY;
    Object object_;
};

} // namespace trs::sim
