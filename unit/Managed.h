// What an object of the simulated unit has besides the operations that are served by hand.
#pragma once

#include "rmi/Servant.h"
#include "unit/FaultService.h"
#include "unit/LocationId.h"
#include "unit/PerformanceService.h"
#include "unit/Properties.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace trs::sim {

// Enters an object into the inventory and has Properties answer what its servant does not. Where its class hands out a
// location identity and a performance service, they are there; an application object also gets a fault service, with a
// condition for each operation of its class that hands one out: getDownEgress() leads to the condition DownEgress.
class Managed {
public:
    // `servant` outlives it.
    Managed(Inventory& inventory, Servant& servant, std::string_view className);
    Managed(Managed const&) = delete;
    Managed& operator=(Managed const&) = delete;
    ~Managed();

    // Null for an object that is no application object.
    FaultService* faults() { return faults_ ? &*faults_ : nullptr; }

    Properties& properties() { return properties_; }
    // Has an operation without in-arguments tell these results from now on, whatever else the object would tell. Empty,
    // or what is wrong with them.
    std::string force(catalogue::Operation const& reader, catalogue::Value const& results);
    // What was forced, by operation.
    std::map<catalogue::Operation const*, catalogue::Value> const& forced() const { return forced_; }

    // What an operation that takes arguments reads.
    struct Keys {
        std::function<std::vector<Properties::Values>()> all; // the arguments for which it tells something
        std::function<void()> clear;                          // has it tell nothing, whatever the arguments
    };
    void addKeys(std::string_view operation, Keys keys) { keys_[std::string(operation)] = std::move(keys); }
    std::map<std::string, Keys> const& keys() const { return keys_; }

    // Forgets what was set, forced and kept by key, but not what is served by hand otherwise.
    void clear();

private:
    template <class Proxy>
    void addServices(Servant& servant);
    void addFaults(Servant& servant, catalogue::Class const& type);
    bool answerByShape(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);
    bool answerForced(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);
    bool handOutCondition(unsigned long classId, unsigned long opIndex, TipprmiStream& reply);

    Inventory& inventory_;
    std::string const id_;
    Servant& servant_;
    Properties properties_;
    std::map<catalogue::Operation const*, catalogue::Value> forced_;
    std::map<std::string, Keys> keys_;
    std::optional<LocationId> location_;
    std::optional<FaultService> faults_;
    std::optional<PerformanceService> performance_;
    std::map<std::pair<unsigned long, unsigned long>, Condition*> conditions_; // by the operation that hands it out
};

// An object that has no operation that is served by hand.
class PlainObject {
public:
    PlainObject(Inventory& inventory, std::string const& id, std::string_view className)
        : servant_(TipprmiOID(id)), managed_(inventory, servant_, className)
    {
    }

    Servant& servant() { return servant_; }
    Managed& managed() { return managed_; }
    template <class Proxy>
    Proxy proxy() const
    {
        return Proxy(&servant_);
    }

private:
    Servant servant_;
    Managed managed_;
};

} // namespace trs::sim
