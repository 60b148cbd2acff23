// The rule manager of the simulated unit, with its rule sets: what RmAccessClient reaches.
#pragma once

#include "clients/ip/RmAccessClient.h"
#include "unit/Managed.h"

#include <map>
#include <string>

namespace trs::sim {

// Rule sets and their exceptions have unique names.
class RuleManager {
public:
    RuleManager(Inventory& inventory, std::string const& id);
    RuleManager(RuleManager const&) = delete;
    RuleManager& operator=(RuleManager const&) = delete;

private:
    using Ruleset = RmAccessClient::Ruleset;
    using Exception = RmAccessClient::Exception;

    void serveRulesets();
    void serveExceptions();
    Ruleset* find(std::string const& name);
    Exception* find(std::string const& ruleset, std::string const& name);
    TipprmiSequence<Exception> exceptions() const;

    std::map<std::string, Ruleset> rulesets_;
    Managed object_;
};

} // namespace trs::sim
