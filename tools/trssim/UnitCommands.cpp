#include "tools/trssim/UnitCommands.h"

#include "platform/host/CallFailure.h"
#include "tools/catalogue/ObjectName.h"

#include <functional>
#include <utility>

namespace sim {

namespace {

using tools::Words;

constexpr long mostSeconds = 100L * 24 * 60 * 60;

std::string quoted(std::string const& word) { return "'" + host::printable(word) + "'"; }

// Adds commands that run as the objects' code does, under the run permission.
class Adder {
public:
    explicit Adder(tools::Console& console) : console_(console) {}

    Adder& add(std::string name, std::string arguments, std::string help, std::function<std::string(Words const&)> run)
    {
        console_.add(
            {std::move(name), std::move(arguments), std::move(help), [run = std::move(run)](Words const& words) {
                 TreflectHandlerState const running;
                 return run(words);
             }});
        return *this;
    }

private:
    tools::Console& console_;
};

void addAgentCommands(Adder& adder, UnitAgent& agent)
{
    adder
        .add("address", "[ADDRESS]", "says the public address, or sets it without telling anybody",
             [&agent](Words const& words) {
                 if (words.empty()) {
                     agent.sayAddress();
                 } else {
                     agent.setAddress(words.front());
                 }
                 return std::string();
             })
        .add("announce", "[ADDRESS]", "sets the public address, to none without a word, and announces it",
             [&agent](Words const& words) {
                 agent.announce(words.empty() ? std::string() : words.front());
                 return std::string();
             })
        .add("alarms", "accept|refuse", "how alarms are answered from now on",
             [&agent](Words const& words) {
                 bool const accepts = words.front() == "accept";
                 if (!accepts && words.front() != "refuse") {
                     return quoted(words.front()) + " is neither accept nor refuse";
                 }
                 agent.setAcceptsAlarms(accepts);
                 return std::string();
             })
        .add("hang", "", "lets the next call of the agent wait for its answer until the unit ends",
             [&agent](Words const&) {
                 agent.hang();
                 return std::string();
             });
}

void addFaultCommands(Adder& adder, FaultService& faults)
{
    auto const addChange = [&](char const* name, char const* help, void (Condition::*change)()) {
        adder.add(name, "NAME", help, [&faults, change](Words const& words) {
            Condition* const condition = faults.condition(words.front());
            if (condition == nullptr) {
                return quoted(words.front()) + " is no condition; conditions lists them";
            }
            (condition->*change)();
            return std::string();
        });
    };
    addChange("raise", "makes a condition active", &Condition::raise);
    addChange("cancel", "makes a condition inactive", &Condition::cancel);
    addChange("suppress", "keeps a condition from taking effect", &Condition::suppress);
    addChange("unsuppress", "ends that", &Condition::unsuppress);
    adder
        .add("conditions", "", "lists the conditions",
             [&faults](Words const&) {
                 for (Condition const& condition : faults.conditions()) {
                     tools::say(condition.text());
                 }
                 return std::string();
             })
        .add("state", "[unlocked|locked|shutting-down]", "says or sets the administrative state",
             [&faults](Words const& words) {
                 if (words.empty()) {
                     tools::say(faults.adminState().text());
                 } else if (!faults.adminState().set(AdminState::stateOf(words.front()))) {
                     return quoted(words.front()) + " is no state: unlocked, locked or shutting-down";
                 }
                 return std::string();
             });
}

void addPerformanceCommands(Adder& adder, ApplicationObject& object)
{
    adder.add("tick", "[SECONDS]", "lets time pass for the counters, 1 s without a word",
              [&object](Words const& words) {
                  long seconds = 1;
                  if (!words.empty() && !tools::parseNumber(words.front(), 1, mostSeconds, seconds)) {
                      return quoted(words.front()) + " is no number from 1 to " + std::to_string(mostSeconds);
                  }
                  PerformanceService* const performance = object.performance();
                  if (performance == nullptr) {
                      return std::string("there is no performance service now");
                  }
                  performance->tick(static_cast<unsigned long>(seconds));
                  return std::string();
              });
}

} // namespace

void addCommands(tools::Console& console, UnitAgent& agent, ApplicationObject& object, Inventory const& inventory)
{
    Adder adder(console);
    addAgentCommands(adder, agent);
    addFaultCommands(adder, object.faults());
    addPerformanceCommands(adder, object);
    adder.add("objects", "", "lists all objects, as trsctl takes them", [&inventory](Words const&) {
        for (Inventory::Entry const& entry : inventory.all()) {
            tools::say(catalogue::ObjectName{std::string(entry.type->name), entry.id}.text());
        }
        return std::string();
    });
}

} // namespace sim
