// The simulated unit's application object: what ApplicationObjectClient reaches.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/Servant.h"
#include "unit/FaultService.h"
#include "unit/LocationId.h"
#include "unit/ObjectList.h"
#include "unit/PerformanceService.h"

#include <optional>
#include <string>

namespace trs::sim {

// Owns its services. It consumes and provides services itself.
class ApplicationObject {
public:
    ApplicationObject(Inventory& inventory, std::string const& id);
    ApplicationObject(ApplicationObject const&) = delete;
    ApplicationObject& operator=(ApplicationObject const&) = delete;

    FaultService& faults() { return faults_; }

private:
    using Objects = ObjectList<ApplicationObjectClient>;

    auto proxy() const { return ApplicationObjectClient(&servant_); }
    void makePerformanceService();
    void serveServices();
    void serveSupport();
    void serveLife();
    bool isReleaseGranted(ApplicationObjectClient const& other) const;

    Inventory& inventory_;
    std::string const id_;
    LocationId location_;
    FaultService faults_;
    std::optional<PerformanceService> performance_; // none after destroyPerformanceSvc()
    bool reportsToExtern_ = true;
    Objects consumers_;
    Objects providers_;
    ApplicationObjectSenaPolicyClient policy_;
    Servant servant_;
};

} // namespace trs::sim
