#include "unit/Simulator.h"

#include "catalogue/Json.h"
#include "unit/Inventory.h"
#include "unit/Scenario.h"
#include "unit/Status.h"
#include "unit/Unit.h"

namespace trs::sim {

namespace {

constexpr unsigned long longestAdvance = 100UL * 24 * 60 * 60; // seconds

} // namespace

Simulator::Simulator(Inventory& inventory, Unit& unit)
    : unit_(unit), object_(inventory, SimulatorClient::SIMULATOR_OID, reflect::className<SimulatorClient>)
{
    serveTimeAndState();
    serveFaults();
}

void Simulator::serveTimeAndState()
{
    object_.servant()
        .on<&SimulatorClient::getTime>([this](unsigned long& seconds) {
            seconds = unit_.inventory().clock().now();
            return GetClient::OK;
        })
        .on<&SimulatorClient::advance>([this](unsigned long const& seconds) {
            if (seconds > longestAdvance) {
                return RunClient::FAILED;
            }
            unit_.advance(seconds);
            return RunClient::OK;
        })
        .on<&SimulatorClient::execute>([this](std::string const& command, std::string& output, std::string& wrong) {
            wrong = executor_ ? executor_(command, output) : "there are no commands";
            return statusOf<RunClient>(wrong.empty());
        })
        .on<&SimulatorClient::getScenario>([this](std::string& scenario) {
            scenario = catalogue::toJson(scenario::save(unit_), -1);
            return GetClient::OK;
        })
        .on<&SimulatorClient::applyScenario>([this](std::string const& scenario, std::string& wrong) {
            catalogue::Value document;
            wrong = catalogue::parseJson(scenario, document);
            wrong = wrong.empty() ? scenario::apply(unit_, document) : "the scenario is " + wrong;
            return statusOf<RunClient>(wrong.empty());
        })
        .on<&SimulatorClient::getCallCount>([this](unsigned long& count) {
            count = unit_.callCount();
            return GetClient::OK;
        });
}

void Simulator::serveFaults()
{
    object_.servant()
        .on<&SimulatorClient::inject>(
            [this](SimulatorClient::Misbehaviour const& fault, unsigned long& number, std::string& wrong) {
                wrong = unit_.misbehaviours().inject(fault, number);
                return statusOf<RunClient>(wrong.empty());
            })
        .on<&SimulatorClient::withdraw>(
            [this](unsigned long const& number) { return statusOf<RunClient>(unit_.misbehaviours().withdraw(number)); })
        .on<&SimulatorClient::getMisbehaviours>([this](TipprmiSequence<SimulatorClient::NumberedMisbehaviour>& faults) {
            faults = unit_.misbehaviours().all();
            return GetClient::OK;
        });
}

} // namespace trs::sim
