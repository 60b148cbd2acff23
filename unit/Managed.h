// An object of the simulated unit with all that its class promises, also where it has no behaviour of its own.
#pragma once

#include "unit/Attribute.h"
#include "unit/FaultService.h"
#include "unit/LocationId.h"
#include "unit/Object.h"
#include "unit/PerformanceService.h"
#include "unit/Properties.h"

#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace trs::sim {

// Has Properties answer what is not served by hand. Where its class hands out a location identity and a performance
// service, they are there; an application object also gets a fault service, with a condition for each operation of its
// class that hands one out: getDownEgress() leads to the condition DownEgress. Values that are objects, such as the
// path type, are there as well.
class Managed : public Object {
public:
    Managed(Inventory& inventory, std::string const& id, std::string_view className);

    // Null for an object that is no application object.
    FaultService* faults() { return faults_ ? &*faults_ : nullptr; }
    FaultService const* faults() const { return faults_ ? &*faults_ : nullptr; }
    // Null where the class hands out none.
    PerformanceService* performance() { return performance_ ? &*performance_ : nullptr; }
    Properties& properties() { return properties_; }

private:
    template <class Proxy>
    void addServices();
    void addFaults();
    bool answerByShape(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);
    void addAttributes();
    bool handOut(unsigned long classId, unsigned long opIndex, TipprmiStream& reply) const;

    Properties properties_;
    std::optional<LocationId> location_;
    std::optional<FaultService> faults_;
    std::optional<PerformanceService> performance_;
    std::list<Attribute> attributes_;
    std::map<std::pair<unsigned long, unsigned long>, std::string>
        handedOut_; // conditions and attributes, by operation
};

} // namespace trs::sim
