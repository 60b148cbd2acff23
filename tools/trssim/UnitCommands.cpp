#include "tools/trssim/UnitCommands.h"

#include "broker/PrintableText.h"
#include "broker/ServerTap.h"
#include "catalogue/ObjectName.h"
#include "unit/ApplicationObject.h"
#include "unit/Scenario.h"
#include "unit/Simulator.h"

#include <functional>
#include <utility>

namespace trs::sim {

namespace {

using catalogue::Words;
using tools::Console;

constexpr long mostFaults = 1'000'000'000;
constexpr long mostSeconds = 100L * 24 * 60 * 60;

std::string quoted(std::string const& word) { return "'" + printable(word) + "'"; }

// Adds commands that run as the objects' code does, under the run permission and past the faults.
class Adder {
public:
    Adder(Console& console, Unit& unit) : console_(console), unit_(unit) {}

    Adder& add(std::string name, std::string arguments, std::string help, std::function<std::string(Words const&)> run)
    {
        console_.add({std::move(name), std::move(arguments), std::move(help),
                      [&unit = unit_, run = std::move(run)](Words const& words) {
                          return Console::isForOthers() ? runAsObject(run, words) : runAndKeep(unit, run, words);
                      }});
        return *this;
    }

private:
    using Run = std::function<std::string(Words const&)>;

    static std::string runAsObject(Run const& run, Words const& words)
    {
        TreflectHandlerState const running;
        UntappedCalls const own;
        return run(words);
    }
    // Of a command that came by a call, whoever answers that keeps what it changed.
    static std::string runAndKeep(Unit& unit, Run const& run, Words const& words)
    {
        std::string wrong = runAsObject(run, words);
        return unit.keep() || !wrong.empty() ? wrong : "what it changed cannot be kept";
    }

    Console& console_;
    Unit& unit_;
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

// A condition of the object AppObject-1 by its name, or any one by its identifier. Unbound, and `wrong` set, when there
// is none.
ConditionClient conditionOf(Unit& unit, std::string const& name, std::string& wrong)
{
    if (Condition const* const own = unit.object().faults().condition(name)) {
        return own->proxy();
    }
    Object const* const found = unit.inventory().find(name.substr(name.find(':') + 1));
    if (found != nullptr && found->type().name == reflect::className<ConditionClient>) {
        return found->proxy<ConditionClient>();
    }
    wrong = quoted(name) + " is no condition; conditions lists them";
    return {};
}

// A link that has lost its cable says so by its condition LOC, and everything else follows from that.
std::string cable(Unit& unit, Words const& words)
{
    bool const isLost = words.front() == "lost";
    if (!isLost && words.front() != "back") {
        return quoted(words.front()) + " is neither lost nor back";
    }
    std::string const link = words.size() > 1 ? words[1].substr(words[1].find(':') + 1) : "HwmUnit-1/EthLink";
    Object const* const condition = unit.inventory().find(link + "/Condition/LOC");
    if (condition == nullptr) {
        return quoted(link) + " is no Ethernet link; objects lists them";
    }
    auto const loc = condition->proxy<ConditionClient>();
    isLost ? loc.raise() : loc.cancel();
    return {};
}

// The changes are made as any client makes them, so that observers are told.
void addConditionCommands(Adder& adder, Unit& unit)
{
    using Change = ResponseInfo<RunClient> (ConditionClient::*)() const;
    auto const addChange = [&](char const* name, char const* help, Change change) {
        adder.add(name, "NAME", help, [&unit, change](Words const& words) {
            std::string wrong;
            ConditionClient const condition = conditionOf(unit, words.front(), wrong);
            if (wrong.empty() && !((condition.*change)() == RunClient::OK)) {
                wrong = "the condition refuses";
            }
            return wrong;
        });
    };
    addChange("raise", "makes a condition active: one of AppObject-1 by name, or any by identifier",
              &ConditionClient::raise);
    addChange("cancel", "makes a condition inactive", &ConditionClient::cancel);
    addChange("suppress", "keeps a condition from taking effect", &ConditionClient::suppress);
    addChange("unsuppress", "ends that", &ConditionClient::unsuppress);
    adder
        .add("cable", "lost|back [LINK]",
             "takes the cable of an Ethernet link away, HwmUnit-1/EthLink unless said, or plugs it in again",
             [&unit](Words const& words) { return cable(unit, words); })
        .add("conditions", "", "lists the conditions of AppObject-1",
             [&unit](Words const&) {
                 for (Condition const& condition : unit.object().faults().conditions()) {
                     Console::list(condition.text());
                 }
                 return std::string();
             })
        .add("state", "[unlocked|locked|shutting-down]", "says or sets the administrative state of AppObject-1",
             [&unit](Words const& words) {
                 AdminState& state = unit.object().faults().adminState();
                 if (words.empty()) {
                     Console::list(state.text());
                 } else if (!state.set(AdminState::stateOf(words.front()))) {
                     return quoted(words.front()) + " is no state: unlocked, locked or shutting-down";
                 }
                 return std::string();
             });
}

std::string tick(Unit& unit, Words const& words)
{
    long seconds = 1;
    if (!words.empty() && !catalogue::parseNumber(words.front(), 1, mostSeconds, seconds)) {
        return quoted(words.front()) + " is no number from 1 to " + std::to_string(mostSeconds);
    }
    Clock const& clock = unit.inventory().clock();
    unsigned long const before = clock.now();
    unit.advance(static_cast<unsigned long>(seconds));
    constexpr unsigned long interval = PerformanceService::intervalSeconds;
    Console::list(std::to_string(seconds) +
                  " s passed, ended intervals: " + std::to_string(clock.now() / interval - before / interval));
    return {};
}

void addSimulationCommands(Adder& adder, Unit& unit)
{
    adder
        .add("tick", "[SECONDS]", "lets time pass, 1 s without a word",
             [&unit](Words const& words) { return tick(unit, words); })
        .add("fault", "KIND [WORD...]",
             "answers calls badly: refuse, delay, drop, late, twice, cut, flip, lie, close or trickle, of "
             "operation=CLASS[.OPERATION] and object=ID, from call=N on, count=N of them, by chance per-mille=N, with "
             "delay=MS",
             [&unit](Words const& words) {
                 MisbehaviourPlan::Misbehaviour fault;
                 unsigned long number = 0;
                 std::string wrong = MisbehaviourPlan::parse(words, fault);
                 wrong = wrong.empty() ? unit.misbehaviours().inject(fault, number) : wrong;
                 if (wrong.empty()) {
                     Console::list("fault " + std::to_string(number) + ": " + MisbehaviourPlan::text(fault));
                 }
                 return wrong;
             })
        .add("faults", "", "lists the faults, with the calls that matched and those that they struck",
             [&unit](Words const&) {
                 for (SimulatorClient::NumberedMisbehaviour const& each : unit.misbehaviours().all()) {
                     Console::list("fault " + std::to_string(each.number) + ": " + MisbehaviourPlan::text(each.fault) +
                                   ": " + std::to_string(each.struck) + " of " + std::to_string(each.matched));
                 }
                 return std::string();
             })
        .add("clear", "[NUMBER]", "ends a fault, or all", [&unit](Words const& words) {
            long number = 0;
            if (!words.empty() && (!catalogue::parseNumber(words.front(), 1, mostFaults, number) ||
                                   !unit.misbehaviours().withdraw(static_cast<unsigned long>(number)))) {
                return quoted(words.front()) + " is no fault; faults lists them";
            }
            if (words.empty()) {
                unit.misbehaviours().withdraw(0);
            }
            return std::string();
        });
}

void addStateCommands(Adder& adder, Unit& unit)
{
    adder
        .add("objects", "", "lists all objects, as trsctl takes them",
             [&unit](Words const&) {
                 for (Object const* const object : unit.inventory().all()) {
                     Console::list(catalogue::ObjectName{std::string(object->type().name), object->id()}.text());
                 }
                 return std::string();
             })
        .add("save", "FILE", "writes what the unit holds as a scenario",
             [&unit](Words const& words) { return scenario::store(unit, words.front()); })
        .add("load", "FILE", "makes the unit hold what a scenario says",
             [&unit](Words const& words) { return scenario::load(unit, words.front()); });
}

} // namespace

void addCommands(Console& console, Unit& unit)
{
    Adder adder(console, unit);
    addAgentCommands(adder, unit.agent());
    addConditionCommands(adder, unit);
    addSimulationCommands(adder, unit);
    addStateCommands(adder, unit);
    unit.simulator().setExecutor(
        [&console](std::string const& command, std::string& output) { return console.execute(command, output); });
}

} // namespace trs::sim
