#include "unit/LocationId.h"

#include "clients/services/LocationIdSkeleton.h"

namespace trs::sim {

LocationId::LocationId(Inventory& inventory, std::string const& owner)
    : object_(inventory, owner + "/LocationId", reflect::className<LocationIdClient>)
{
    object_.servant()
        .on<&LocationIdClient::toString>([] { return std::string("cabinet 1, slot 2, port 3"); })
        .on<&LocationIdClient::toKey>([] { return std::string("1.2.3"); })
        .on<&LocationIdClient::containsType>(
            [](unsigned long const& type) { return type == LocationIdClient::LID_LOCATION_ID; })
        .on<&LocationIdClient::equals>([this](LocationIdClient const& other) { return proxy().isSameObject(other); });
}

} // namespace trs::sim
