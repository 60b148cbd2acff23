#include "unit/ApplicationObject.h"

#include "broker/PrintableText.h"
#include "rmi/ApplicationObjectSenaPolicySkeleton.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "unit/Journal.h"
#include "unit/Status.h"

namespace trs::sim {

namespace {

// Severities: 1 critical, 2 major, 3 minor.
std::vector<Condition::Kind> const kinds = {
    {"los", "loss of signal", 1, true}, {"deg", "signal degraded", 2, false}, {"temp", "high temperature", 3, false}};

// What became of a set operation; what was done is said.
SetClient::State done(bool isDone, std::string const& what)
{
    if (isDone) {
        say(what);
    }
    return statusOf<SetClient>(isDone);
}

std::string nameOf(TipprmiObjectClient const& object) { return printable(object.getOID().getIdString()); }

} // namespace

ApplicationObject::ApplicationObject(Inventory& inventory, std::string const& id)
    : inventory_(inventory), id_(id), location_(id), faults_(id, kinds), servant_(TipprmiOID(id))
{
    inventory_.add(proxy());
    inventory_.add(location_.proxy());
    faults_.enter(inventory_);
    makePerformanceService();
    serveServices();
    serveSupport();
    serveLife();
}

void ApplicationObject::makePerformanceService()
{
    performance_.emplace(inventory_, id_);
    inventory_.add(performance_->proxy());
}

void ApplicationObject::serveServices()
{
    servant_.on<&ApplicationObjectClient::hasLocationId>([] { return true; })
        .on<&ApplicationObjectClient::getLocationId>([this] { return location_.proxy(); })
        .on<&ApplicationObjectClient::getFaultSvc>([this] { return faults_.proxy(); })
        .on<&ApplicationObjectClient::getReportToExtern>([this] { return reportsToExtern_; })
        .on<&ApplicationObjectClient::setReportToExtern>([this](bool const& report) {
            reportsToExtern_ = report;
            return done(true, report ? "conditions are reported to the outside" : "conditions are not reported");
        })
        .on<&ApplicationObjectClient::getPerformanceSvc>(
            [this] { return performance_ ? performance_->proxy() : PerformanceServiceClient(); })
        .on<&ApplicationObjectClient::createPerformanceSvc>([this] {
            bool const isMade = !performance_;
            if (isMade) {
                makePerformanceService();
            }
            return done(isMade, "performance service created");
        })
        .on<&ApplicationObjectClient::destroyPerformanceSvc>([this] {
            bool const isThere = performance_.has_value();
            if (isThere) {
                inventory_.remove(performance_->proxy().getOID().getIdString());
                performance_.reset();
            }
            return done(isThere, "performance service destroyed");
        });
}

void ApplicationObject::serveSupport()
{
    servant_.on<&ApplicationObjectClient::getConsumerIf>([this] { return proxy(); })
        .on<&ApplicationObjectClient::getProviderIf>([this] { return proxy(); })
        .on<&ApplicationObjectClient::getServiceConsumers>([this] { return consumers_.all(); })
        .on<&ApplicationObjectClient::getServiceProviders>([this] { return providers_.all(); })
        .on<&ApplicationObjectClient::isSupportedBy>([this](ApplicationObjectClient const& provider) {
            return done(providers_.insert(provider), "supported by " + nameOf(provider));
        })
        .on<&ApplicationObjectClient::isNoLongerSupportedBy>([this](ApplicationObjectClient const& provider) {
            return done(providers_.remove(provider), "no longer supported by " + nameOf(provider));
        })
        .on<&ApplicationObjectClient::startSupportOf>([this](ApplicationObjectClient const& consumer) {
            return done(consumers_.insert(consumer), "supports " + nameOf(consumer));
        })
        .on<&ApplicationObjectClient::stopSupportOf>([this](ApplicationObjectClient const& consumer) {
            return done(consumers_.remove(consumer), "no longer supports " + nameOf(consumer));
        })
        .on<&ApplicationObjectClient::requestSupportRelease>(
            [this](ApplicationObjectClient const& other, bool& granted) {
                granted = isReleaseGranted(other);
                return done(true, "release of " + nameOf(other) + (granted ? " granted" : " not granted"));
            });
}

void ApplicationObject::serveLife()
{
    servant_
        .on<&ApplicationObjectClient::setSenaPolicy>([this](ApplicationObjectSenaPolicyClient const& policy) {
            policy_ = policy;
            say("support policy " + nameOf(policy) + " attached");
        })
        .on<&ApplicationObjectClient::clearSenaPolicy>([this] {
            policy_ = ApplicationObjectSenaPolicyClient();
            say("support policy detached");
        })
        .on<&ApplicationObjectClient::checkSenaState>([] { say("support state checked"); })
        .on<&ApplicationObjectClient::ready>([] { say("ready to work"); })
        .on<&ApplicationObjectClient::reset>([this] {
            say("reset");
            faults_.reset();
        });
}

// An object that is supported is released unless the policy, asked about it, objects. The policy may live in another
// process, and another one be attached while it is asked.
bool ApplicationObject::isReleaseGranted(ApplicationObjectClient const& other) const
{
    ApplicationObjectSenaPolicyClient const policy = policy_;
    return consumers_.contains(other) && (policy.getOID().isNull() || policy.getState(other));
}

} // namespace trs::sim
