#include "unit/Unit.h"

#include "broker/Broker.h"
#include "rmi/TreflectHandlerState.h"
#include "unit/ApplicationObject.h"
#include "unit/CallGate.h"
#include "unit/CallLog.h"
#include "unit/Equipment.h"
#include "unit/FaultPlan.h"
#include "unit/IpNode.h"
#include "unit/Simulator.h"

namespace trs::sim {

struct Unit::Parts {
    Parts(Unit& unit, Options const& options)
        : inventory(options.seed), object(inventory, "AppObject-1"), ipNode(inventory),
          agent(options.address, [this](std::string const& address) { ipNode.setPrimaryAddress(address); }),
          equipment(inventory), faults(options.seed, [&unit] { return unit.tapLocalCalls(); }), log(options.isTimed),
          gate(faults, log, [this] { return inventory.clock().now(); }), simulator(unit)
    {
        inventory.add(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME, *catalogue::findClass("NmiRmiAdapterClient"));
    }

    Inventory inventory;
    ApplicationObject object;
    IpNode ipNode;
    UnitAgent agent;
    Equipment equipment;
    FaultPlan faults;
    CallLog log;
    CallGate gate;
    Simulator simulator;
    bool isServing = false;
};

Unit::Unit(Options const& options) : parts_(std::make_unique<Parts>(*this, options)) {}

Unit::~Unit()
{
    parts_->agent.letGo();
    parts_->gate.end();
    if (parts_->isServing) {
        Broker::instance().stop();
        Broker::instance().setTap(nullptr);
    }
    Broker::instance().setLocalTap(nullptr);
}

std::string Unit::tapLocalCalls() { return Broker::instance().setLocalTap(&parts_->gate); }

std::string Unit::serve(std::string const& endpoint)
{
    parts_->isServing = true;
    Broker::instance().setTap(&parts_->gate);
    return Broker::instance().serve(endpoint);
}

std::string Unit::logCalls(std::string const& file)
{
    std::string why = parts_->log.open(file);
    return why.empty() ? tapLocalCalls() : why;
}

bool Unit::hasLoggedAllCalls() const { return parts_->log.isWhole(); }

unsigned long Unit::callCount() const { return parts_->gate.count(); }

void Unit::advance(unsigned long seconds)
{
    TreflectHandlerState const running;
    inventory().clock().advance(seconds);
}

UnitAgent& Unit::agent() { return parts_->agent; }

Inventory& Unit::inventory() { return parts_->inventory; }

ApplicationObject& Unit::object() { return parts_->object; }

Simulator& Unit::simulator() { return parts_->simulator; }

FaultPlan& Unit::faults() { return parts_->faults; }

bool Unit::create(std::string const& id, std::string_view className)
{
    return inventory().find(id) == nullptr &&
           (parts_->ipNode.create(id, className) || parts_->equipment.create(id, className));
}

bool Unit::remove(std::string const& id) { return parts_->ipNode.remove(id) || parts_->equipment.remove(id); }

} // namespace trs::sim
