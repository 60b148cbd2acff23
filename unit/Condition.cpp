#include "unit/Condition.h"

#include "clients/services/ConditionSkeleton.h"
#include "unit/FaultService.h"
#include "unit/Journal.h"
#include "unit/Status.h"

#include <fmt/format.h>

namespace trs::sim {

Condition::Condition(Inventory& inventory, Kind const& kind, std::string const& owner, FaultService& service)
    : kind_(kind), service_(service),
      object_(inventory, owner + "/Condition/" + kind.name, reflect::className<ConditionClient>)
{
    serveAttributes();
    serveState();
    serveGroup();
    hold();
}

void Condition::hold()
{
    Facts& facts = object_.facts();
    facts.addTold<&ConditionClient::getCurrentSeverity>(currentSeverity_);
    facts.addTold<&ConditionClient::getDefaultSeverity>(defaultSeverity_);
    facts.addTold<&ConditionClient::getPriority>(priority_);
    facts.addTold<&ConditionClient::getReportToExtern>(reportsToExtern_);
    facts.add("isMember", isMember_);
    facts.addTold<&ConditionClient::isActive>(isActive_, [this](bool isActive) {
        isActive_ = isActive;
        isReported_ = isActive && isMember_; // unless the next fact says otherwise
        return true;
    });
    facts.add("isReported", isReported_);
    facts.addTold<&ConditionClient::isSuppressed>(isSuppressed_);
}

void Condition::setReported(bool isReported)
{
    isReported_ = isReported;
    object_.changed();
}

void Condition::serveAttributes()
{
    object_.servant()
        .on<&ConditionClient::getCurrentSeverity>([this] { return currentSeverity_; })
        .on<&ConditionClient::getDefaultSeverity>([this] { return defaultSeverity_; })
        .on<&ConditionClient::getPriority>([this] { return priority_; })
        .on<&ConditionClient::getReportToExtern>([this] { return reportsToExtern_; })
        .on<&ConditionClient::disablesOperState>([this] { return kind_.disablesOperState; })
        .on<&ConditionClient::isReportedToExtern>([this] { return isReportedToExtern(); })
        .on<&ConditionClient::setCurrentSeverity>([this](long const& severity) {
            currentSeverity_ = severity;
            say(fmt::format("condition {} has severity {}", kind_.name, currentSeverity_));
        })
        .on<&ConditionClient::setDefaultSeverity>([this](long const& severity) {
            defaultSeverity_ = severity;
            say(fmt::format("condition {} has default severity {}", kind_.name, defaultSeverity_));
        })
        .on<&ConditionClient::resetCurrentSeverity>([this] {
            currentSeverity_ = defaultSeverity_;
            say(fmt::format("condition {} has severity {} again", kind_.name, currentSeverity_));
        })
        .on<&ConditionClient::setPriority>([this](long const& priority) {
            priority_ = priority;
            say(fmt::format("condition {} has priority {}", kind_.name, priority_));
        })
        .on<&ConditionClient::setReportToExtern>([this](bool const& report) {
            reportsToExtern_ = report;
            say(name() + (report ? " is to be reported to the outside" : " is not to be reported any more"));
        });
}

void Condition::serveState()
{
    object_.servant()
        .on<&ConditionClient::isActive>([this] { return isActive_; })
        .on<&ConditionClient::isSuppressed>([this] { return isSuppressed_; })
        .on<&ConditionClient::raise>([this] {
            raise();
            return RunClient::OK;
        })
        .on<&ConditionClient::cancel>([this] {
            cancel();
            return RunClient::OK;
        })
        .on<&ConditionClient::suppress>([this] {
            suppress();
            return RunClient::OK;
        })
        .on<&ConditionClient::unsuppress>([this] {
            unsuppress();
            return RunClient::OK;
        });
}

void Condition::serveGroup()
{
    object_.servant()
        .on<&ConditionClient::addToGroup>([this](FaultServiceClient const& group) {
            return statusOf<RunClient>(service_.proxy().isSameObject(group) && join());
        })
        .on<&ConditionClient::removeFromGroup>([this] { return statusOf<RunClient>(leave()); })
        .on<&ConditionClient::activateWithoutGroup>([this] {
            setActive(true);
            return RunClient::OK;
        })
        .on<&ConditionClient::deactivateWithoutGroup>([this] {
            setActive(false);
            return RunClient::OK;
        });
}

// The group is told even when nothing changed here: it may not know of a change that was made without it.
void Condition::raise()
{
    setActive(true);
    report(FaultService::raised);
}

void Condition::cancel()
{
    setActive(false);
    report(FaultService::cancelled);
}

void Condition::suppress()
{
    setSuppressed(true);
    report(FaultService::suppressed);
}

void Condition::unsuppress()
{
    setSuppressed(false);
    report(FaultService::unsuppressed);
}

bool Condition::join()
{
    if (isMember_) {
        return false;
    }
    isMember_ = true;
    object_.changed();
    say("condition " + name() + " is in the group");
    if (isActive_) {
        report(FaultService::raised);
    }
    return true;
}

bool Condition::leave()
{
    if (!isMember_) {
        return false;
    }
    report(FaultService::cancelled);
    isMember_ = false;
    object_.changed();
    say("condition " + name() + " is in no group");
    return true;
}

void Condition::setActive(bool active)
{
    if (isActive_ != active) {
        isActive_ = active;
        object_.changed();
        say("condition " + name() + (active ? " raised" : " cancelled"));
    }
}

void Condition::setSuppressed(bool suppressed)
{
    if (isSuppressed_ != suppressed) {
        isSuppressed_ = suppressed;
        object_.changed();
        say("condition " + name() + (suppressed ? " suppressed" : " unsuppressed"));
    }
}

void Condition::report(FaultServiceClient::ConditionNotification event)
{
    if (isMember_) {
        service_.take(event, *this);
    }
}

bool Condition::isReportedToExtern() const { return reportsToExtern_ && !isSuppressed_ && isReported_; }

std::string Condition::text() const
{
    return fmt::format("{} ({}): {}, {}, severity {}, priority {}, {} the group", kind_.name, kind_.meaning,
                       isActive_ ? "active" : "inactive", isSuppressed_ ? "suppressed" : "not suppressed",
                       currentSeverity_, priority_, isMember_ ? "in" : "not in");
}

} // namespace trs::sim
