// Where the simulated object is: what LocationIdClient reaches.
#pragma once

#include "clients/services/LocationIdClient.h"
#include "unit/Object.h"

#include <string>

namespace trs::sim {

class LocationId {
public:
    LocationId(Inventory& inventory, std::string const& owner);

    auto proxy() const { return object_.proxy<LocationIdClient>(); }

private:
    Object object_;
};

} // namespace trs::sim
