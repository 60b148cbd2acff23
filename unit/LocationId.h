// Where the simulated object is: what LocationIdClient reaches.
#pragma once

#include "clients/services/LocationIdClient.h"
#include "rmi/Servant.h"

#include <string>

namespace trs::sim {

class LocationId {
public:
    explicit LocationId(std::string const& owner);

    auto proxy() const { return LocationIdClient(&servant_); }

private:
    Servant servant_;
};

} // namespace trs::sim
