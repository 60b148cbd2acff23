// Documents of what a unit holds: the former format, wrong ones, and what moves by itself afterwards.
#include "tests/unit/Campaign.h"

#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "rmi/TreflectHandlerState.h"
#include "unit/ApplicationObject.h"
#include "unit/Scenario.h"

#include <gmock/gmock.h>
#include <memory>

namespace {

using trs::catalogue::Value;
namespace scenario = trs::sim::scenario;

class Scenarios : public testing::Test {
protected:
    static Value tell(char const* className, char const* id, char const* operation, std::vector<Value> const& in = {})
    {
        trs::catalogue::Outcome const outcome = trs::catalogue::call(
            TipprmiObjectClient(TipprmiOID(id)), *trs::catalogue::findClass(className)->find(operation), in);
        return outcome.kind == trs::catalogue::Outcome::Kind::done ? outcome.results : Value();
    }
    static Value facts(char const* id, trs::sim::Unit& unit) { return unit.inventory().find(id)->facts().say(); }
    static std::unique_ptr<trs::sim::Unit> unit(std::string const& address = "10.0.0.7")
    {
        return std::make_unique<trs::sim::Unit>(trs::sim::Unit::Options{address, 0, false});
    }

    TreflectHandlerState const running;
};

// A unit of the former version held this when it was saved.
TEST_F(Scenarios, TheFormerFormatIsTakenAndThePresentOneSaved)
{
    auto sim = unit();
    ASSERT_EQ(scenario::load(*sim, TRSMAN_SOURCE_DIR "/tests/data/scenario_first_format.json"), "");
    struct {
        char const* className;
        char const* id;
        char const* operation;
        std::vector<Value> in;
        char const* told;
    } const cases[] = {
        {"NmiRmiAdapter", "NmiRmiAdapterServer", "getPublicIpAddrRmi", {}, R"({"result": "10.0.0.9"})"},
        {"EthIfNet", "IfNet/Transport", "getMtu", {}, R"({"mtu": 1400})"},
        {"EthIfNet", "IfNet/Transport", "getVlanTags", {}, R"({"result": [200]})"},
        {"EthIfNet", "IfNet/Transport", "getFlags", {}, R"({"flags": 65})"},
        {"EthIfNet", "IfNet/Lmp", "getFlags", {}, R"({"flags": 0})"},
        {"FaultService", "IfNet/Lmp/FaultService", "getOperState", {}, R"({"result": 12})"},
        {"FaultService", "IfNet/Transport/FaultService", "getOperState", {}, R"({"result": 11})"},
        {"FaultService", "AppObject-1/FaultService", "isAnyActive", {}, R"({"result": true})"},
        {"Condition", "AppObject-1/Condition/los", "isReportedToExtern", {}, R"({"result": true})"},
        {"IpNode",
         "IpNode",
         "getIpConfig",
         {"x"},
         R"({"address": "10.0.0.1", "address2": "10.0.0.2", "number": 3, "text": "text"})"},
        {"NtpAccess",
         "Access/Ntp",
         "getNtpDaemon",
         {},
         R"({"servers": [{"address": "10.0.0.3", "value1": 5, "status": "NTP_SERVER_STATUS_0", "value2": 0, "value3": 0}]})"},
        {"IpRoutingTable", "RoutingTable/0", "getNexthop", {"10.9.9.9", false}, R"({"nexthop": "10.1.0.253"})"},
        {"HwmModule", "HwmUnit-1/Module/3", "getSlotNumber", {}, R"({"result": 3})"},
        {"PerformanceService",
         "Access/Dhcp/PerformanceService",
         "getCurrentData",
         {1},
         R"({"result": true, "value": 40866200})"},
        {"Simulator", "Simulator", "getTime", {}, R"({"seconds": 2000})"},
    };
    for (auto const& each : cases) {
        EXPECT_EQ(tell(each.className, each.id, each.operation, each.in), Value::parse(each.told))
            << each.id << ' ' << each.operation;
    }
    EXPECT_EQ(sim->inventory().find("IfNet/Transport/Vlan/100"), nullptr);

    Value const saved = scenario::save(*sim);
    EXPECT_EQ(saved["format"], 2);
    EXPECT_EQ(saved["seed"], 4);
    sim.reset();
    sim = unit("");
    EXPECT_EQ(scenario::apply(*sim, saved), "");
    EXPECT_EQ(Value::diff(saved, scenario::save(*sim)), Value::array());
}

// Whatever part of a document is wrong, the parts before it have changed nothing, the time included.
TEST_F(Scenarios, AWrongOneChangesNothing)
{
    auto sim = unit();
    sim->advance(1000);
    tell("EthLink", "HwmUnit-1/EthLink", "attachVlanTags", {{7}});
    sim->object().faults().condition("los")->proxy().raise();
    Value const before = scenario::save(*sim);
    Value document = Value::parse(R"({"format": 2, "time": 5000, "seed": 5, "load": "noise", "faults": ["drop"],
        "objects": {
            "EthIfNet:IfNet/Transport": {"getMtu": {"mtu": 1400}, "setFlags": {"flags": 0}},
            "Condition:HwmUnit-1/LmpLink/Condition/LOC": {"isActive": {"result": true}},
            "HwmUnit:HwmUnit-1": {"getSerialNumber": {"number": "OTHER"}},
            "VlanIfNet:IfNet/Lmp/Vlan/5": {},
            "VlanIfNet:IfNet/Transport/Vlan/200": null,
            "NmiRmiAdapter:NmiRmiAdapterServer": {"getPublicIpAddrRmi": {"result": "10.9.9.9"}},
            "QelLong:PdhUnit-1/PathType": {"get": {"result": 12}}}})");
    struct {
        char const* object;
        char const* facts;
        char const* complaint;
    } const cases[] = {
        {"VlanMap:VlanMap", R"({"getNothing": {}})", "is no fact"},
        {"AdminState:VlanMap/AdminState", R"({"get": {"result": 9}})", "is refused"},
        {"IpNode:IpNode", R"({"getMtu": {"mtu": 5}})", "is not 68..65535"},
        {"VlanIfNet:IfNet/Lmp/Vlan/6", R"({"getVlanId": {"vlanId": 5}})", "the same VLAN identifier"},
        {"VlanIfNet:IfNet/Lmp/Vlan/6", R"({"getShaperBurstSize": {"size": 5}})", "5 is not 1522..2000000"},
        {"EthIfNet:IfNet/Lmp", R"({"getLinks": {"result": []}})", "is refused"},
        {"QelLong:PdhUnit-1/PathType", R"({"get": {"result": 77}})", "is refused"},
        {"PerformanceService:VlanMap/PerformanceService", R"({"counted": {"from": 0, "to": 6000}})", "no seconds"},
        {"IpRoutingTable:RoutingTable/0",
         R"({"getIpRouteEntriesCfg": {"routes": [{"destination": "10.9.0.0", "netmask": "255.0.255.0",
                                                  "gateway": "10.1.0.9"}]}})",
         "netmask"},
        {"Access/Nothing:x", "{}", "is no class"},
        {"TransportModePar:TransportMode", R"({"getMinUdpPort": {"port": 77}})", "port: 77 is not "},
    };
    for (auto const& each : cases) {
        Value wrong = document;
        wrong["objects"][each.object] = Value::parse(each.facts);
        EXPECT_THAT(scenario::apply(*sim, wrong), testing::HasSubstr(each.complaint)) << each.facts;
        EXPECT_EQ(Value::diff(before, scenario::save(*sim)), Value::array()) << each.facts;
    }
    EXPECT_EQ(scenario::apply(*sim, document), "") << "without what was wrong";
}

TEST_F(Scenarios, WhatMovesByItselfMovesAfterwards)
{
    auto sim = unit();
    sim->advance(950);
    tell("Condition", "HwmUnit-1/EthLink/Condition/LOC", "raise");
    tell("NtpAccess", "Access/Ntp", "createNtpServer", {"10.0.0.3", 5});
    tell("ApplicationObject", "AppObject-1", "destroyPerformanceSvc");
    tell("AdminState", "IfNet/Lmp/AdminState", "insertPolicy", {"AdminStatePolicy:IfNet/Transport/Policy"});
    sim->agent().setAcceptsAlarms(false);
    Value const saved = scenario::save(*sim);
    sim.reset();
    sim = unit("");
    ASSERT_EQ(scenario::apply(*sim, saved), "");

    auto const count = [](char const* id) { return tell("PerformanceService", id, "getCurrentData", {1})["value"]; };
    Value const still = count("IfNet/Transport/PerformanceService");
    Value const moving = count("IfNet/Lmp/PerformanceService");
    sim->advance(10);
    EXPECT_EQ(count("IfNet/Transport/PerformanceService"), still) << "it is down";
    EXPECT_EQ(count("IfNet/Lmp/PerformanceService"), moving.get<long>() + 10 * 125'000);
    EXPECT_EQ(tell("PerformanceService", "IfNet/Lmp/PerformanceService", "getElapsedTime")["elapsed"], 60);
    EXPECT_EQ(sim->inventory().find("AppObject-1/PerformanceService"), nullptr);
    auto const isPermitted = [] { return tell("AdminState", "IfNet/Lmp/AdminState", "getPermissionState")["result"]; };
    EXPECT_EQ(isPermitted(), false) << "by the policy of the interface that is down";
    EXPECT_FALSE(NmiRmiAdapterClient(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME).sendAlarmRmi({}));

    tell("Condition", "HwmUnit-1/EthLink/Condition/LOC", "cancel");
    sim->advance(10);
    EXPECT_EQ(count("IfNet/Transport/PerformanceService"), still.get<long>() + 10 * 125'000) << "it is up again";
    EXPECT_EQ(isPermitted(), true);
}

TEST_F(Scenarios, VlansMaySwapTheirIdentifiers)
{
    auto sim = unit();
    auto const setId = [](char const* id, int to) { tell("VlanIfNet", id, "setVlanId", {to}); };
    setId("IfNet/Transport/Vlan/100", 7);
    setId("IfNet/Transport/Vlan/200", 100);
    setId("IfNet/Transport/Vlan/100", 200);
    Value const saved = scenario::save(*sim);
    sim.reset();
    sim = unit();
    EXPECT_EQ(scenario::apply(*sim, saved), "");
    EXPECT_EQ(tell("EthIfNet", "IfNet/Transport", "getVlanIfNet", {200})["vlan"], "VlanIfNet:IfNet/Transport/Vlan/100");
    EXPECT_EQ(Value::diff(saved, scenario::save(*sim)), Value::array());
}

// The example of the page is one, and loses a cable.
TEST_F(Scenarios, ThePageHasAnExample)
{
    std::string page;
    ASSERT_EQ(trs::catalogue::readWholeFile(TRSMAN_SOURCE_DIR "/docs/trssim.md", page), "");
    std::size_t const begin = page.find("    {\n      \"format\"");
    std::size_t const end = page.find("\n    }\n", begin);
    ASSERT_NE(end, std::string::npos);
    Value document;
    ASSERT_EQ(trs::catalogue::parseJson(page.substr(begin, end + 6 - begin), document), "");
    auto sim = unit();
    EXPECT_EQ(scenario::apply(*sim, document), "");
    EXPECT_EQ(tell("EthIfNet", "IfNet/Transport", "getFlags")["flags"], 1);
    EXPECT_EQ(tell("EthIfNet", "IfNet/Transport", "getMtu")["mtu"], 1400);
    EXPECT_EQ(tell("FaultService", "IfNet/Transport/Vlan/200/FaultService", "getOperState")["result"], 12);
    EXPECT_EQ(tell("EthIfNet", "IfNet/Lmp", "getVlanTags")["result"], Value({31}));
    EXPECT_EQ(tell("HwmUnit", "HwmUnit-1", "getSerialNumber")["number"], "K1");
}

// A fault strikes as often as it was asked to, however often the unit was saved meanwhile.
TEST_F(Scenarios, AFaultIsSavedWithWhatIsLeftOfIt)
{
    trs::sim::MisbehaviourPlan plan(0);
    unsigned long number = 0;
    EXPECT_EQ(plan.inject({"refuse", "IfNet.getMtu", "", 3, 2, 0, 0}, number), "");
    trs::catalogue::Operation const& operation = *trs::catalogue::findClass("IfNet")->find("getMtu");
    trs::ObjectAddress call{};
    call.classId = operation.classId;
    call.opIndex = operation.index;
    char const* const left[] = {"refuse operation=IfNet.getMtu call=2 count=2",
                                "refuse operation=IfNet.getMtu call=1 count=2",
                                "refuse operation=IfNet.getMtu count=1"};
    for (char const* const text : left) {
        plan.strike(call);
        ASSERT_EQ(plan.left().size(), 1U);
        EXPECT_EQ(trs::sim::MisbehaviourPlan::text(plan.left().front()), text);
    }
    plan.strike(call);
    EXPECT_TRUE(plan.left().empty());
}

} // namespace
