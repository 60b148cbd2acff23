// The simulated unit's application object: what ApplicationObjectClient reaches.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "unit/FaultService.h"
#include "unit/LocationId.h"
#include "unit/Object.h"
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
    // The performance service by its identifier. False when it is another one's, or there already, or not there.
    bool create(std::string const& id);
    bool remove(std::string const& id);

private:
    using Objects = ObjectList<ApplicationObjectClient>;

    auto proxy() const { return object_.proxy<ApplicationObjectClient>(); }
    void hold();
    void serveServices();
    void serveSupport();
    void serveLife();
    bool isReleaseGranted(ApplicationObjectClient const& other) const;

    Object object_;
    LocationId location_;
    FaultService faults_;
    std::optional<PerformanceService> performance_; // none after destroyPerformanceSvc()
    bool reportsToExtern_ = true;
    Objects consumers_;
    Objects providers_;
    ApplicationObjectSenaPolicyClient policy_;
};

} // namespace trs::sim
