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
    : object_(inventory, id, reflect::className<ApplicationObjectClient>), location_(inventory, id),
      faults_(inventory, id, kinds)
{
    performance_.emplace(inventory, id, object_.type());
    serveServices();
    serveSupport();
    serveLife();
    hold();
}

void ApplicationObject::hold()
{
    Facts& facts = object_.facts();
    facts.addTold<&ApplicationObjectClient::getReportToExtern>(reportsToExtern_);
    facts.addTold<&ApplicationObjectClient::getServiceConsumers>(consumers_.list());
    facts.addTold<&ApplicationObjectClient::getServiceProviders>(providers_.list());
    facts.addGiven<&ApplicationObjectClient::setSenaPolicy>(policy_);
}

bool ApplicationObject::create(std::string const& id)
{
    if (performance_ || id != object_.id() + "/PerformanceService") {
        return false;
    }
    performance_.emplace(object_.inventory(), object_.id(), object_.type());
    return true;
}

bool ApplicationObject::remove(std::string const& id)
{
    bool const isThis = performance_ && performance_->proxy().getOID().getIdString() == id;
    if (isThis) {
        performance_.reset();
    }
    return isThis;
}

void ApplicationObject::serveServices()
{
    object_.servant()
        .on<&ApplicationObjectClient::hasLocationId>([] { return true; })
        .on<&ApplicationObjectClient::getLocationId>([this] { return location_.proxy(); })
        .on<&ApplicationObjectClient::getFaultSvc>([this] { return faults_.proxy(); })
        .on<&ApplicationObjectClient::getReportToExtern>([this] { return reportsToExtern_; })
        .on<&ApplicationObjectClient::setReportToExtern>([this](bool const& report) {
            reportsToExtern_ = report;
            return done(true, report ? "conditions are reported to the outside" : "conditions are not reported");
        })
        .on<&ApplicationObjectClient::getPerformanceSvc>(
            [this] { return performance_ ? performance_->proxy() : PerformanceServiceClient(); })
        .on<&ApplicationObjectClient::createPerformanceSvc>(
            [this] { return done(create(object_.id() + "/PerformanceService"), "performance service created"); })
        .on<&ApplicationObjectClient::destroyPerformanceSvc>([this] {
            return done(performance_ && remove(performance_->proxy().getOID().getIdString()),
                        "performance service destroyed");
        });
}

void ApplicationObject::serveSupport()
{
    object_.servant()
        .on<&ApplicationObjectClient::getConsumerIf>([this] { return proxy(); })
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
    object_.servant()
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
