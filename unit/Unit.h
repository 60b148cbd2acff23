// A whole simulated unit in this process: what `trssim` is, for a test of management code to have without a process and
// without a socket.
#pragma once

#include "unit/Load.h"
#include "unit/MisbehaviourPlan.h"
#include "unit/UnitAgent.h"

#include <memory>
#include <string>
#include <string_view>

namespace trs::sim {

class ApplicationObject;
class Inventory;
class Simulator;

// Its objects are reachable by proxies of this process from construction to destruction, and by those of others from
// serve() on. There is one at a time, as its objects have well-known identifiers.
class Unit {
public:
    struct Options {
        std::string address;    // the public address at the start
        unsigned long seed = 0; // with the same one, what is left to chance is the same
        bool isTimed = true;    // whether the log of calls has times of day and durations
        Load::Profile load = Load::Profile::steady;
    };

    Unit() : Unit(Options()) {}
    explicit Unit(Options const& options);
    Unit(Unit const&) = delete;
    Unit& operator=(Unit const&) = delete;
    // Ends serving.
    ~Unit();

    // Holds the unit over restarts in this file: the unit becomes what the file says, or the file is made, which
    // `isNew` tells. From then on every change is in it before its answer goes out. Empty, or why it cannot. The
    // calling thread is under the run permission.
    std::string holdIn(std::string const& file, bool& isNew);
    // Has the file what was changed otherwise than by calls that come over connections. False when it cannot. The
    // calling thread is not under the run permission.
    bool keep();

    // Another seed than that of the options.
    void setSeed(unsigned long seed);

    // Serves at `unix:PATH`, `tcp:HOST:PORT` or `tcp:PORT`. Empty, or why it cannot.
    std::string serve(std::string const& endpoint);
    // Logs the calls of the unit to this file, a JSON object a line (docs/trssim.md), those that come over connections
    // from the first serve() on. Empty, or why it cannot.
    std::string logCalls(std::string const& file);
    // Whether all calls could be logged.
    bool hasLoggedAllCalls() const;
    // The calls that came over connections, and since the first fault or the log those of this process.
    unsigned long callCount() const;

    // Lets time pass, in seconds.
    void advance(unsigned long seconds);

    // Which calls are answered badly, those of this process as well (Broker::setLocalTap).
    MisbehaviourPlan& misbehaviours();

    // What follows is for threads that have the run permission (TreflectHandlerState).
    UnitAgent& agent();

    // For the unit's own programs; a test has proxies for the same.
    Inventory& inventory();
    ApplicationObject& object();
    Simulator& simulator();
    // An object more, by identifier and class; one less. False when it cannot be.
    bool create(std::string const& id, std::string_view className);
    bool remove(std::string const& id);

private:
    std::string tapLocalCalls();

    struct Parts;
    std::unique_ptr<Parts> const parts_;
};

} // namespace trs::sim
