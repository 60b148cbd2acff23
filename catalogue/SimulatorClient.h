// SimulatorClient: the simulated unit's own controls, well known as SIMULATOR_OID. No real unit has them.
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Lets time pass, has calls answered badly, executes the simulator's commands, and tells and takes what the unit holds.
class SimulatorClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    SimulatorClient() = default;
    explicit SimulatorClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<SimulatorClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The identifier of the simulator's object.
    static std::string const SIMULATOR_OID;

    // How calls are answered badly, and which.
    struct Misbehaviour {
        std::string kind;       // "refuse", "delay", "drop", "late", "twice", "cut", "flip", "lie", "close", "trickle"
        std::string operation;  // "IfNet.getMtu", "IfNet" for all of a class, "" for all
        std::string object;     // the identifier; "" for all
        unsigned long call;     // the first call it concerns, among those that match: 1 for the first, like 0
        unsigned long count;    // how many of them; 0 for all from then on
        unsigned long perMille; // of them, by chance; 0 stands for 1000
        unsigned long delay;    // in milliseconds, of delay and late; 0 for 1000
    };
    // A fault and its number.
    struct NumberedMisbehaviour {
        unsigned long number;
        Misbehaviour fault;
        unsigned long matched; // calls that matched so far
        unsigned long struck;  // those of them that were answered badly
    };

    // Reads the unit's time, in seconds since it began.
    virtual ResponseInfo<GetClient> getTime(unsigned long& seconds) const;
    // Lets time pass, in seconds: counters advance and intervals end.
    virtual ResponseInfo<RunClient> advance(unsigned long const& seconds) const;
    // Has calls answered badly from now on; `wrong` tells why it is refused.
    virtual ResponseInfo<RunClient> inject(Misbehaviour const& fault, unsigned long& number, std::string& wrong) const;
    // Ends a fault by its number; 0 ends all.
    virtual ResponseInfo<RunClient> withdraw(unsigned long const& number) const;
    // Reads the faults, in the order of their numbers.
    virtual ResponseInfo<GetClient> getMisbehaviours(TipprmiSequence<NumberedMisbehaviour>& faults) const;
    // Executes a command of the simulator's console; `output` is what it lists, and `wrong` tells why it is refused.
    virtual ResponseInfo<RunClient> execute(std::string const& command, std::string& output, std::string& wrong) const;
    // Reads what the unit holds, as a scenario file has it.
    virtual ResponseInfo<GetClient> getScenario(std::string& scenario) const;
    // Makes the unit hold what a scenario says; `wrong` tells why it is refused.
    virtual ResponseInfo<RunClient> applyScenario(std::string const& scenario, std::string& wrong) const;
    // Reads how many calls came over connections so far.
    virtual ResponseInfo<GetClient> getCallCount(unsigned long& count) const;
};

template <>
struct RecordFields<SimulatorClient::Misbehaviour>
    : Fields<&SimulatorClient::Misbehaviour::kind, &SimulatorClient::Misbehaviour::operation,
             &SimulatorClient::Misbehaviour::object, &SimulatorClient::Misbehaviour::call,
             &SimulatorClient::Misbehaviour::count, &SimulatorClient::Misbehaviour::perMille,
             &SimulatorClient::Misbehaviour::delay> {};

template <>
struct RecordFields<SimulatorClient::NumberedMisbehaviour>
    : Fields<&SimulatorClient::NumberedMisbehaviour::number, &SimulatorClient::NumberedMisbehaviour::fault,
             &SimulatorClient::NumberedMisbehaviour::matched, &SimulatorClient::NumberedMisbehaviour::struck> {};

template <>
struct Operations<SimulatorClient>
    : OperationList<SimulatorClient, 0x0332ce04, Operation<0, &SimulatorClient::getTime>,
                    Operation<1, &SimulatorClient::advance>, Operation<2, &SimulatorClient::inject>,
                    Operation<3, &SimulatorClient::withdraw>, Operation<4, &SimulatorClient::getMisbehaviours>,
                    Operation<5, &SimulatorClient::execute>, Operation<6, &SimulatorClient::getScenario>,
                    Operation<7, &SimulatorClient::applyScenario>, Operation<8, &SimulatorClient::getCallCount>> {};
