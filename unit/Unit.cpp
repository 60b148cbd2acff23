#include "unit/Unit.h"

#include "broker/Broker.h"
#include "rmi/TreflectHandlerState.h"

namespace trs::sim {

Unit::Unit(Options const& options)
    : inventory_(options.seed), object_(inventory_, "AppObject-1"), ipNode_(inventory_),
      agent_(options.address, [this](std::string const& address) { ipNode_.setPrimaryAddress(address); }),
      equipment_(inventory_), faults_(options.seed), log_(options.isTimed),
      gate_(faults_, log_, [this] { return inventory_.clock().now(); }), simulator_(*this)
{
    inventory_.add(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME, *catalogue::findClass("NmiRmiAdapterClient"));
}

Unit::~Unit()
{
    if (isServing_) {
        agent_.letGo();
        gate_.end();
        Broker::instance().stop();
        Broker::instance().setTap(nullptr);
    }
}

std::string Unit::serve(std::string const& endpoint)
{
    isServing_ = true;
    Broker::instance().setTap(&gate_);
    return Broker::instance().serve(endpoint);
}

void Unit::advance(unsigned long seconds)
{
    TreflectHandlerState const running;
    inventory_.clock().advance(seconds);
}

bool Unit::create(std::string const& id, std::string_view className)
{
    return inventory_.find(id) == nullptr && (ipNode_.create(id, className) || equipment_.create(id, className));
}

bool Unit::remove(std::string const& id) { return ipNode_.remove(id) || equipment_.remove(id); }

} // namespace trs::sim
