#include "unit/Unit.h"

#include "broker/Broker.h"
#include "rmi/TreflectHandlerState.h"
#include "unit/ApplicationObject.h"
#include "unit/CallGate.h"
#include "unit/CallLog.h"
#include "unit/Equipment.h"
#include "unit/IpNode.h"
#include "unit/MisbehaviourPlan.h"
#include "unit/Simulator.h"
#include "unit/Store.h"

namespace trs::sim {

struct Unit::Parts {
    Parts(Unit& unit, Options const& options)
        : inventory(options.seed), address(options.address), object(inventory, "AppObject-1"),
          ipNode(inventory, address), agent(inventory, address), equipment(inventory),
          faults(
              options.seed, [&unit] { return unit.tapLocalCalls(); }, [this] { noteChange(); }),
          log(options.isTimed),
          gate(
              faults, log, [this] { return inventory.clock().now(); }, [this] { return !store || store->keep(); }),
          simulator(inventory, unit)
    {
        inventory.load().setProfile(options.load);
    }

    void noteChange() const
    {
        if (store) {
            store->noteChange();
        }
    }

    Inventory inventory;
    PublicAddress address;
    ApplicationObject object;
    IpNode ipNode;
    UnitAgent agent;
    Equipment equipment;
    MisbehaviourPlan faults;
    CallLog log;
    CallGate gate;
    Simulator simulator;
    std::unique_ptr<Store> store;
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

std::string Unit::holdIn(std::string const& file, bool& isNew)
{
    auto store = std::make_unique<Store>(*this);
    std::string wrong = store->open(file, isNew);
    if (wrong.empty()) {
        parts_->store = std::move(store);
    }
    return wrong;
}

bool Unit::keep()
{
    parts_->noteChange();
    return !parts_->store || parts_->store->keep();
}

void Unit::setSeed(unsigned long seed)
{
    parts_->inventory.setSeed(seed);
    parts_->faults.setSeed(seed);
}

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
    parts_->noteChange();
}

UnitAgent& Unit::agent() { return parts_->agent; }

Inventory& Unit::inventory() { return parts_->inventory; }

ApplicationObject& Unit::object() { return parts_->object; }

Simulator& Unit::simulator() { return parts_->simulator; }

MisbehaviourPlan& Unit::misbehaviours() { return parts_->faults; }

bool Unit::create(std::string const& id, std::string_view className)
{
    return inventory().find(id) == nullptr && (parts_->ipNode.create(id, className) || parts_->object.create(id) ||
                                               parts_->equipment.create(id, className));
}

bool Unit::remove(std::string const& id)
{
    return parts_->ipNode.remove(id) || parts_->object.remove(id) || parts_->equipment.remove(id);
}

} // namespace trs::sim
