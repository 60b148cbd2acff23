// What the simulated unit does for tests of management software: calls answered badly, calls logged, time by command.
#include "broker/Broker.h"
#include "broker/CallFailure.h"
#include "catalogue/SimulatorClient.h"
#include "catalogue/Value.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/services/PerformanceServiceClient.h"
#include "tests/support/Programs.h"

#include <filesystem>
#include <fstream>

namespace {

using trs::CallFailure;
using trs::catalogue::Value;

using Fleet = ProgramTest;

class Simulation : public ProgramTest {
protected:
    ~Simulation() override { std::filesystem::remove(log); }

    // What became of a call: "done", "refused", or the kind of failure.
    std::string outcome() const
    {
        long mtu = 0;
        ResponseInfo<GetClient> const status = node.getMtu(mtu);
        switch (trs::lastCallFailure().kind) {
        case CallFailure::Kind::none:
            return status == GetClient::OK ? "done " + std::to_string(mtu) : "refused";
        case CallFailure::Kind::deadline:
            return "deadline";
        case CallFailure::Kind::connectionLost:
            return "lost";
        case CallFailure::Kind::malformedReply:
            return "malformed";
        default:
            return trs::lastCallFailure().reason;
        }
    }
    std::vector<Value> logged() const
    {
        std::vector<Value> lines;
        std::ifstream file(log);
        for (std::string line; std::getline(file, line);) {
            lines.push_back(Value::parse(line, nullptr, false));
        }
        return lines;
    }

    std::string const log = path + ".calls";
    Unit sim = unit({"--clock", "stepped", "--seed", "2", "--log-calls", log});
    TreflectORB const* const peer = peerAt(endpoint);
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID)};
    SimulatorClient const simulator{TipprmiOID(SimulatorClient::SIMULATOR_OID)};
};

// Each kind of fault is what the client sees it to be, befalls the calls it is meant for, and leaves the next one
// alone.
TEST_F(Simulation, AnswersCallsBadly)
{
    struct {
        std::string kind;
        std::string more;
        std::vector<std::string> outcomes; // any of these
    } const cases[] = {
        {"refuse", "", {"refused"}},
        {"delay", " delay=20", {"done 1500"}},
        {"late", " delay=20", {"done 1500"}},
        {"trickle", "", {"done 1500"}},
        {"twice", "", {"done 1500"}},
        {"cut", "", {"malformed"}},
        {"close", "", {"lost", "malformed"}},
        {"drop", "", {"deadline"}},
        {"lie", "", {"deadline", "malformed", "lost"}}, // the reply has no count but its length
    };
    for (auto const& [kind, more, outcomes] : cases) {
        sim.does("fault " + kind + " operation=IpNode.getMtu object=IpNode count=1" + more);
        bool const isUnanswered = outcomes.front() == "deadline";
        trs::Broker::setDeadline(isUnanswered ? std::chrono::milliseconds(200) : std::chrono::milliseconds(20000));
        EXPECT_THAT(outcomes, testing::Contains(outcome())) << kind;
        trs::Broker::setDeadline(std::chrono::seconds(20));
        EXPECT_EQ(outcome(), "done 1500") << "the call after " << kind;
        EXPECT_THAT(sim.does("faults"), testing::EndsWith("1 of 2"));
        EXPECT_TRUE(sim.writeLine("clear"));
    }
}

TEST_F(Simulation, FlipsBitsAndLiesAboutCountsWithoutHarm)
{
    sim.does("fault flip operation=IpNode");
    trs::Broker::setDeadline(std::chrono::milliseconds(200));
    std::size_t changed = 0;
    for (int i = 0; i < 50; ++i) {
        changed += outcome() != "done 1500" ? 1U : 0U;
    }
    EXPECT_GT(changed, 25U) << "a bit may be one that does not matter";
    EXPECT_TRUE(sim.writeLine("clear"));
    sim.does("fault lie operation=IpRoutingTable.getIpRouteEntriesCfg");
    IpRoutingTableClient const table(TipprmiOID("RoutingTable/0"));
    TipprmiSequence<IpRoutingTableClient::IpRouteEntryCfg> routes;
    for (int i = 0; i < 8; ++i) {
        table.getIpRouteEntriesCfg(routes);
        EXPECT_EQ(trs::lastCallFailure().kind, CallFailure::Kind::malformedReply) << trs::lastCallFailure().text();
    }
    trs::Broker::setDeadline(std::chrono::seconds(20));
}

TEST_F(Simulation, FaultsConcernTheCallsThatAreMeant)
{
    unsigned long number = 0;
    std::string output;
    std::string wrong;
    EXPECT_TRUE(simulator.inject({"refuse", "IpNode.getMtu", "", 3, 2, 0, 0}, number, wrong) == RunClient::OK);
    std::string outcomes;
    for (int i = 0; i < 6; ++i) {
        outcomes += outcome() == "refused" ? 'r' : '.';
    }
    EXPECT_EQ(outcomes, "..rr..");
    EXPECT_TRUE(simulator.inject({"refuse", "IpNode.getMtu", "", 0, 0, 300, 0}, number, wrong) == RunClient::OK);
    int refused = 0;
    for (int i = 0; i < 200; ++i) {
        refused += outcome() == "refused" ? 1 : 0;
    }
    EXPECT_TRUE(refused > 30 && refused < 90) << refused << " of 200 at 300 per mille";
    TipprmiSequence<SimulatorClient::NumberedMisbehaviour> faults;
    EXPECT_TRUE(simulator.getMisbehaviours(faults) == GetClient::OK);
    ASSERT_EQ(faults.getLength(), 2U);
    EXPECT_TRUE(faults[0].struck == 2 && faults[0].matched == 206 && faults[1].matched == 200);
    EXPECT_EQ(faults[1].struck, static_cast<unsigned long>(refused));
    EXPECT_TRUE(simulator.withdraw(number) == RunClient::OK);
    EXPECT_TRUE(simulator.withdraw(number) == RunClient::FAILED);
    EXPECT_EQ(outcome(), "done 1500");

    struct {
        char const* line;
        char const* complaint;
    } const cases[] = {{"fault burn", "'burn' is no kind of fault: refuse, delay"},
                       {"fault cut operation=Nothing", "'Nothing' is no class"},
                       {"fault cut operation=IpNode.x", "'x' is no operation of IpNodeClient"},
                       {"fault cut call=0", "'call=0': '0' is no number from 1"},
                       {"fault cut twice", "'twice' is none of operation="},
                       {"fault cut per-mille=1001", "'1001' is no number"},
                       {"clear 99", "'99' is no fault"}};
    for (auto const& [line, complaint] : cases) {
        EXPECT_THAT(sim.rejects(line), testing::HasSubstr(complaint));
    }
}

TEST_F(Simulation, LogsCallsForAssertions)
{
    outcome();
    EXPECT_TRUE(node.setMtu(1400) == SetClient::OK);
    sim.does("fault refuse operation=IpNode.setMtu object=IpNode");
    EXPECT_TRUE(node.setMtu(1300) == SetClient::FAILED);
    IpNodeClient(TipprmiOID("Nobody")).setMtu(1);
    unsigned long count = 0;
    EXPECT_TRUE(simulator.getCallCount(count) == GetClient::OK);

    std::vector<Value> const lines = logged();
    ASSERT_EQ(lines.size(), count);
    EXPECT_EQ(lines[0], Value::parse(R"({"number": 1, "unitTime": 0, "object": "IpNode",
        "operation": "IpNodeClient.getMtu", "arguments": {}, "status": "done", "results": {"mtu": 1500}})"));
    EXPECT_EQ(lines[1]["arguments"], Value({{"mtu", 1400}}));
    EXPECT_EQ(lines[2]["status"], "refused");
    EXPECT_EQ(lines[2]["fault"], "refuse");
    EXPECT_EQ(lines[3]["status"], "no such object");
    EXPECT_EQ(lines[3]["object"], "Nobody");
}

TEST_F(Simulation, TimePassesByCommandAndOverTheWire)
{
    unsigned long seconds = 1;
    EXPECT_TRUE(simulator.getTime(seconds) == GetClient::OK && seconds == 0);
    EXPECT_TRUE(simulator.advance(1000) == RunClient::OK);
    EXPECT_TRUE(simulator.advance(100UL * 24 * 60 * 60 + 1) == RunClient::FAILED);
    std::string output;
    std::string wrong;
    EXPECT_TRUE(simulator.execute("tick 900", output, wrong) == RunClient::OK);
    sim.readUntil("900 s passed, ended intervals: 1");
    EXPECT_TRUE(simulator.getTime(seconds) == GetClient::OK && seconds == 1900);
    unsigned long elapsed = 0;
    EXPECT_TRUE(PerformanceServiceClient(TipprmiOID("IfNet/Transport/PerformanceService")).getElapsedTime(elapsed));
    EXPECT_EQ(elapsed, 100U) << "time passes for all";
    EXPECT_TRUE(simulator.execute("sing", output, wrong) == RunClient::FAILED);
    EXPECT_EQ(wrong, "'sing' is no command; help lists them");

    std::string scenario;
    EXPECT_TRUE(simulator.getScenario(scenario) == GetClient::OK);
    EXPECT_TRUE(simulator.applyScenario(scenario, wrong) == RunClient::OK) << wrong;
    EXPECT_TRUE(simulator.applyScenario("{", wrong) == RunClient::FAILED);
    EXPECT_EQ(wrong, "the scenario is no JSON");
}

TEST_F(Fleet, AUnitThatIsStoppedByACallAnswersIt)
{
    SimulatorClient const simulator{TipprmiOID(SimulatorClient::SIMULATOR_OID)};
    peerAt(endpoint);
    for (int round = 0; round < 50; ++round) {
        Unit sim = unit();
        std::string output;
        std::string wrong;
        ASSERT_TRUE(simulator.execute("stop", output, wrong) == RunClient::OK) << round;
        EXPECT_EQ(sim.waitForExit(), 0);
    }
}

TEST_F(Fleet, ManyUnitsRunAtOnce)
{
    ChildProcess fleet(program("trssim"), {"--units", "3", "--listen", endpoint, "--clock", "stepped", "--save",
                                           path + ".saved", "--seed", "7"});
    for (int i = 0; i < 3; ++i) {
        fleet.readUntil("ready on " + endpoint + "-");
    }
    for (std::string const number : {"1", "2", "3"}) {
        TreflectORB const* const unit = peerAt(endpoint + "-" + number);
        IpNodeClient node;
        node.connect(unit, TipprmiOID(IpNodeClient::IPNODE_OID));
        EXPECT_TRUE(node.setMtu(1000 + std::stol(number)) == SetClient::OK);
    }
    EXPECT_TRUE(fleet.writeLine("stop"));
    EXPECT_EQ(fleet.waitForExit(), 0);
    for (std::string const number : {"1", "2", "3"}) {
        std::ifstream file(path + ".saved-" + number);
        Value const saved = Value::parse(file, nullptr, false);
        ASSERT_TRUE(saved.is_object());
        EXPECT_EQ(saved["seed"], 6 + std::stol(number));
        EXPECT_EQ(saved["objects"]["IpNode:IpNode"]["getMtu"]["mtu"], 1000 + std::stol(number));
        std::filesystem::remove(path + ".saved-" + number);
    }
}

} // namespace
