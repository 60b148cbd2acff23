#include "catalogue/SimulatorClient.h"

#include "rmi/Call.h"

SimulatorClient::ClientSpecificMetaObject SimulatorClient::oMeta;
TreflectMetaObject* SimulatorClient::staticMeta() { return oMeta.completed(); }

std::string const SimulatorClient::SIMULATOR_OID = "Simulator";

ResponseInfo<GetClient> SimulatorClient::getTime(unsigned long& seconds) const
{
    return call<&SimulatorClient::getTime>(*this, seconds);
}
ResponseInfo<RunClient> SimulatorClient::advance(unsigned long const& seconds) const
{
    return call<&SimulatorClient::advance>(*this, seconds);
}
ResponseInfo<RunClient> SimulatorClient::inject(Misbehaviour const& fault, unsigned long& number,
                                                std::string& wrong) const
{
    return call<&SimulatorClient::inject>(*this, fault, number, wrong);
}
ResponseInfo<RunClient> SimulatorClient::withdraw(unsigned long const& number) const
{
    return call<&SimulatorClient::withdraw>(*this, number);
}
ResponseInfo<GetClient> SimulatorClient::getMisbehaviours(TipprmiSequence<NumberedMisbehaviour>& faults) const
{
    return call<&SimulatorClient::getMisbehaviours>(*this, faults);
}
ResponseInfo<RunClient> SimulatorClient::execute(std::string const& command, std::string& output,
                                                 std::string& wrong) const
{
    return call<&SimulatorClient::execute>(*this, command, output, wrong);
}
ResponseInfo<GetClient> SimulatorClient::getScenario(std::string& scenario) const
{
    return call<&SimulatorClient::getScenario>(*this, scenario);
}
ResponseInfo<RunClient> SimulatorClient::applyScenario(std::string const& scenario, std::string& wrong) const
{
    return call<&SimulatorClient::applyScenario>(*this, scenario, wrong);
}
ResponseInfo<GetClient> SimulatorClient::getCallCount(unsigned long& count) const
{
    return call<&SimulatorClient::getCallCount>(*this, count);
}
