// A whole simulated unit in this process: what `trssim` is, for a test of management code to have without a process and
// without a socket.
#pragma once

#include "unit/ApplicationObject.h"
#include "unit/CallGate.h"
#include "unit/CallLog.h"
#include "unit/Equipment.h"
#include "unit/FaultPlan.h"
#include "unit/IpNode.h"
#include "unit/Simulator.h"
#include "unit/UnitAgent.h"

#include <string>

namespace trs::sim {

// Its objects are reachable by proxies of this process from construction to destruction, and by those of others from
// serve() on. There is one at a time, as its objects have well-known identifiers.
class Unit {
public:
    struct Options {
        std::string address;    // the public address at the start
        unsigned long seed = 0; // with the same one, what is left to chance is the same
        bool isTimed = true;    // whether the log of calls has times of day and durations
    };

    Unit() : Unit(Options()) {}
    explicit Unit(Options const& options);
    Unit(Unit const&) = delete;
    Unit& operator=(Unit const&) = delete;
    // Ends serving.
    ~Unit();

    // Serves at `unix:PATH`, `tcp:HOST:PORT` or `tcp:PORT`. Empty, or why it cannot.
    std::string serve(std::string const& endpoint);
    // Logs the calls that come over connections to this file (CallLog.h), from the first serve() on. Empty, or why it
    // cannot.
    std::string logCalls(std::string const& file) { return log_.open(file); }
    // Whether all calls could be logged.
    bool hasLoggedAllCalls() const { return log_.isWhole(); }
    unsigned long callCount() const { return gate_.count(); }

    // Lets time pass.
    void advance(unsigned long seconds);
    // Which calls that come over connections are answered badly.
    FaultPlan& faults() { return faults_; }

    // What follows is for threads that have the run permission (TreflectHandlerState).
    Inventory& inventory() { return inventory_; }
    UnitAgent& agent() { return agent_; }
    ApplicationObject& object() { return object_; }
    Simulator& simulator() { return simulator_; }
    // An object more, by identifier and class; one less. False when it cannot be.
    bool create(std::string const& id, std::string_view className);
    bool remove(std::string const& id);

private:
    Inventory inventory_;
    ApplicationObject object_;
    IpNode ipNode_;
    UnitAgent agent_;
    Equipment equipment_;
    FaultPlan faults_;
    CallLog log_;
    CallGate gate_;
    Simulator simulator_;
    bool isServing_ = false;
};

} // namespace trs::sim
