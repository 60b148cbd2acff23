// The simulated unit in this process: all interfaces, and what its objects keep.
#include "catalogue/Call.h"
#include "catalogue/Limits.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "unit/ApplicationObject.h"
#include "unit/Scenario.h"
#include "unit/Unit.h"

#include "broker/objects/RunPermission.h"
#include "clients/ip/NtpAccessClient.h"
#include "platform/TreflectObserver.h"
#include "rmi/TreflectHandlerState.h"
#include "tests/support/GoldenRecord.h"
#include "tests/support/Sockets.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <future>

namespace {

using trs::catalogue::Class;
using trs::catalogue::Outcome;
using trs::catalogue::Type;
using trs::catalogue::Value;

class WholeUnit : public support::BrokerTest {
protected:
    // A value of the type that is not the initial one.
    static Value sample(Type const& type)
    {
        switch (type.kind) {
        case Type::Kind::boolean:
            return true;
        case Type::Kind::text:
            return "sample";
        case Type::Kind::array:
            return Value(std::vector<Value>(type.count, sample(*type.element)));
        case Type::Kind::sequence:
            return Value::array({sample(*type.element)});
        case Type::Kind::object:
            return "ApplicationObject:AppObject-1";
        case Type::Kind::record: {
            Value record = Value::object();
            for (trs::catalogue::Field const& field : type.fields) {
                record[std::string(field.name)] = sample(*field.type);
            }
            return record;
        }
        default:
            return 1;
        }
    }
    static std::vector<Value> samples(trs::catalogue::Operation const& operation)
    {
        std::vector<Value> values;
        for (trs::catalogue::Parameter const& parameter : operation.parameters) {
            if (parameter.isIn) {
                values.push_back(sample(*parameter.type));
            }
        }
        trs::catalogue::bringWithin(operation, values);
        return values;
    }
    static Outcome call(std::string const& id, Class const& type, char const* operation,
                        std::vector<Value> const& in = {})
    {
        return trs::catalogue::call(TipprmiObjectClient(TipprmiOID(id)), *type.find(operation), in);
    }
    static Class const& classOf(char const* name) { return *trs::catalogue::findClass(name); }

    TreflectHandlerState const running;
    trs::sim::Unit unit;
    trs::sim::Inventory& inventory = unit.inventory();
};

TEST_F(WholeUnit, AnswersEveryOperationOfEveryInterface)
{
    std::size_t count = 0;
    for (auto const& [name, lines] : golden::lines()) {
        Class const* const type = trs::catalogue::findClass(name);
        auto const object = std::ranges::find_if(
            inventory.all(), [type](trs::sim::Object const* each) { return trs::sim::isA(each->type(), type->name); });
        ASSERT_NE(object, inventory.all().end()) << type->name;
        std::string const id = (*object)->id();
        TipprmiObjectClient const proxy{TipprmiOID(id)};
        for (trs::catalogue::Operation const& operation : type->own) {
            Outcome const outcome = trs::catalogue::call(proxy, operation, samples(operation));
            bool const isAnswered = outcome.kind == Outcome::Kind::done || outcome.kind == Outcome::Kind::refused;
            EXPECT_TRUE(isAnswered) << type->name << ' ' << operation.name << " of " << id << ": "
                                    << outcome.failure.reason << outcome.wrong;
            ++count;
        }
    }
    EXPECT_EQ(count, golden::operationCount());
}

// What an object takes is what it tells.
TEST_F(WholeUnit, TellsWhatItWasTold)
{
    std::size_t count = 0;
    std::vector<trs::sim::Object*> const objects = inventory.all();
    for (trs::sim::Object* const object : objects) {
        std::string const& id = object->id();
        Class const* const type = &object->type();
        TipprmiObjectClient const proxy{TipprmiOID(id)};
        for (trs::catalogue::Operation const* const setter : type->operations()) {
            trs::catalogue::Operation const* const reader = readerOf(*type, *setter);
            if (reader == nullptr || setter->parameters.size() != 1) {
                continue;
            }
            Type const* const told = setter->parameters[0].type;
            if (trs::sim::isA(*type, "FaultServiceClient") || told->kind == Type::Kind::object ||
                setter->name == "setVlanTags") { // which are those of the VLANs
                continue;
            }
            Value const value = samples(*setter).front();
            if (trs::catalogue::call(proxy, *setter, {value}).kind == Outcome::Kind::refused) {
                continue;
            }
            Outcome const outcome = trs::catalogue::call(proxy, *reader, {});
            ASSERT_EQ(outcome.kind, Outcome::Kind::done);
            TipprmiStream expected(100);
            TipprmiStream actual(100);
            EXPECT_EQ(trs::catalogue::writeValue(expected, *told, value), "");
            EXPECT_EQ(trs::catalogue::writeValue(actual, *told, outcome.results.begin().value()), "");
            EXPECT_EQ(std::string(expected.data(), expected.data() + expected.size()),
                      std::string(actual.data(), actual.data() + actual.size()))
                << id << ' ' << setter->name;
            ++count;
        }
    }
    EXPECT_GT(count, 150U);
}

// What it tells at first it would take.
TEST_F(WholeUnit, BeginsWithinItsLimits)
{
    std::size_t count = 0;
    for (trs::sim::Object const* const object : inventory.all()) {
        TipprmiObjectClient const proxy{TipprmiOID(object->id())};
        for (trs::catalogue::Operation const* const reader : object->type().operations()) {
            trs::catalogue::Operation const* const writer = writerOf(object->type(), *reader);
            if (writer == nullptr || !isPlainRead(*reader) || !hasLimits(*writer)) {
                continue;
            }
            Outcome const told = trs::catalogue::call(proxy, *reader, {});
            std::vector<Value> const values(told.results.begin(), told.results.end());
            for (trs::catalogue::Violation const& each : trs::catalogue::violations(*writer, values)) {
                ADD_FAILURE() << object->id() << ' ' << writer->name << ' ' << each.text();
            }
            ++count;
        }
    }
    EXPECT_GT(count, 50U);
}

TEST_F(WholeUnit, RaisesTheConditionOfAnInterface)
{
    Class const& ifNet = classOf("EthIfNet");
    Outcome const handed = call("IfNet/Transport", ifNet, "getDownEgress");
    EXPECT_EQ(handed.results["result"], "Condition:IfNet/Transport/Condition/DownEgress");
    Class const& condition = classOf("Condition");
    std::string const id = "IfNet/Transport/Condition/DownEgress";
    auto const operState = [&] {
        return call("IfNet/Transport/FaultService", classOf("FaultService"), "getOperState").results["result"];
    };
    Value const before = operState();
    EXPECT_EQ(call(id, condition, "raise").kind, Outcome::Kind::done);
    EXPECT_EQ(call(id, condition, "isActive").results["result"], true);
    EXPECT_NE(operState(), before);
    EXPECT_EQ(call("IfNet/Lmp/Condition/DownEgress", condition, "isActive").results["result"], false);
    EXPECT_EQ(call(id, condition, "cancel").kind, Outcome::Kind::done);
    EXPECT_EQ(operState(), before);
}

TEST_F(WholeUnit, KnowsItsObjectsAsTheyComeAndGo)
{
    std::size_t const before = inventory.all().size();
    Class const& ifNet = classOf("EthIfNet");
    Value params = samples(*ifNet.find("createVlan")).front();
    params["vlanId"] = 300;
    EXPECT_EQ(call("IfNet/Lmp", ifNet, "createVlan", {params}).results["vlan"], "VlanIfNet:IfNet/Lmp/Vlan/300");
    EXPECT_GT(inventory.all().size(), before);
    EXPECT_EQ(call("IfNet/Lmp/Vlan/300", classOf("VlanIfNet"), "getFaultSvc").results["result"],
              "FaultService:IfNet/Lmp/Vlan/300/FaultService");
    EXPECT_EQ(call("IfNet/Lmp", ifNet, "deleteVlan", {300}).kind, Outcome::Kind::done);
    EXPECT_EQ(inventory.all().size(), before);
    EXPECT_EQ(call("IfNet/Lmp/Vlan/300", classOf("VlanIfNet"), "getMtu").kind, Outcome::Kind::failed);
}

TEST_F(WholeUnit, RefusesRequestsThatItCannotRead)
{
    TipprmiObjectClient const proxy{TipprmiOID("Access/Ntp")};
    trs::catalogue::Operation const& operation = *classOf("NtpAccess").find("setNtpEnabled");
    TipprmiStream request(100);
    TipprmiStream reply(100);
    proxy.prepareRequestStream_(true, operation.classId, operation.index, request).marshall("xy", 2);
    EXPECT_FALSE(proxy.dispatch(true, operation.classId, operation.index, request, reply));
    EXPECT_EQ(trs::lastCallFailure().kind, trs::CallFailure::Kind::refused);
    EXPECT_EQ(call("Access/Ntp", classOf("NtpAccess"), "getNtpEnabled").results["enabled"], false);
}

// Operations that create and delete, insert and remove, reserve and cancel change what others tell.
TEST_F(WholeUnit, ListsChangeByTheirOperations)
{
    Value const ntp = {{"address", "10.0.0.3"}, {"value", 5}};
    auto const user = [](int number) { return Value("ApplicationObject:User-" + std::to_string(number)); };
    struct {
        char const* object;
        char const* type;
        char const* reader; // of the list, as "result" or the only out-argument
        char const* insert;
        std::vector<Value> inserted;
        char const* remove;
        std::vector<Value> removed;
        bool hasStatus;
    } const cases[] = {
        {"Access/Ntp",
         "NtpAccess",
         "getNtpServerSequence",
         "createNtpServer",
         {"10.0.0.3", 5},
         "deleteNtpServer",
         {"10.0.0.3"},
         true},
        {"Access/Dhcp",
         "DhcpAccess",
         "getDhcpConfiguration",
         "createDhcpConfigurationEntry",
         samples(*classOf("DhcpAccess").find("createDhcpConfigurationEntry")),
         "deleteDhcpConfigurationEntry",
         {"1.1.1.1"},
         true},
        {"HwmUnit-1/EthLink",
         "EthLink",
         "getVlanTags",
         "attachVlanTags",
         {{7, 8}},
         "detachVlanTags",
         {{7, 8, 9}},
         false},
        {"Access/Ntp",
         "NtpAccess",
         "getServiceProviders",
         "isSupportedBy",
         {user(1)},
         "isNoLongerSupportedBy",
         {user(1)},
         true},
        {"PdhUnit-1/If/1",
         "TransmissionIf",
         "getReservationSeq",
         "reserve",
         {user(1)},
         "cancelReservation",
         {user(1)},
         false},
        {"IpNode",
         "IpNode",
         "getAtmIfNetSequence",
         "createAtmIfNet",
         samples(*classOf("IpNode").find("createAtmIfNet")),
         "deleteAtmIfNet",
         {"AtmIfNet:IfNet/Atm/2"},
         true},
        {"IpNode",
         "IpNode",
         "getIp3IfNetSequence",
         "createIp3IfNet",
         samples(*classOf("IpNode").find("createIp3IfNet")),
         "deleteIp3IfNet",
         {"Ip3IfNet:IfNet/Ppp/2"},
         true},
        {"Access/RuleManager",
         "RmAccess",
         "getApplicableExceptions",
         "createException",
         {"input", sample(*classOf("RmAccess").find("createException")->parameters[1].type)},
         "deleteException",
         {"input", "sample"},
         true},
    };
    for (auto const& each : cases) {
        Class const& type = classOf(each.type);
        auto const list = [&] { return call(each.object, type, each.reader).results.begin().value(); };
        auto const kindOf = [&](char const* operation, std::vector<Value> const& in) {
            return call(each.object, type, operation, in).kind;
        };
        Outcome::Kind const again = each.hasStatus ? Outcome::Kind::refused : Outcome::Kind::done;
        Value const before = list();
        EXPECT_EQ(kindOf(each.remove, each.removed), again) << each.remove << " what is not there";
        EXPECT_EQ(list(), before);
        EXPECT_EQ(kindOf(each.insert, each.inserted), Outcome::Kind::done) << each.insert;
        Value const changed = list();
        EXPECT_GT(changed.size(), before.size()) << each.insert;
        if (each.type != std::string("IpNode")) { // which makes another one
            EXPECT_EQ(kindOf(each.insert, each.inserted), again) << each.insert << " what is there";
            EXPECT_EQ(list(), changed);
        }
        EXPECT_EQ(kindOf(each.remove, each.removed), Outcome::Kind::done) << each.remove;
        EXPECT_EQ(list(), before) << each.remove;
    }
}

// As of operations that are served by hand, observers are told the result and the arguments.
TEST_F(WholeUnit, ObserversAreToldOfOperationsThatAreAnsweredByShape)
{
    class Listener final : public TreflectObserver {
    public:
        explicit Listener(NtpAccessClient const& source) : TreflectObserver(source.getOID(), &source, "listener") {}
        ~Listener() override { withdraw(); }
        bool detected() override { return false; }
        bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
        {
            told.set_value(parameters);
            return true;
        }
        std::promise<TipprmiSequence<TipprmiAny>> told;
    };
    NtpAccessClient const ntp{TipprmiOID("Access/Ntp")};
    Listener listener(ntp);
    ASSERT_TRUE(ntp.operation("createNtpServer").postObserve(&listener));
    call("Access/Ntp", classOf("NtpAccess"), "createNtpServer", {"10.0.0.3", 5});
    trs::RunPermissionPause const waiting;
    TipprmiSequence<TipprmiAny> const parameters = listener.told.get_future().get();
    ASSERT_EQ(parameters.getLength(), 3U);
    short value = 0;
    EXPECT_TRUE(parameters[2].extract(value) && value == 5);
}

TEST_F(WholeUnit, AnInterfaceThatGoesDownRaisesItsConditions)
{
    auto const isDown = [](char const* id) {
        return call(std::string(id) + "/Condition/DownIngress", classOf("Condition"), "isActive").results["result"];
    };
    auto const setFlags = [](char const* id, int flags) { call(id, classOf("IfNet"), "setFlags", {flags}); };
    constexpr int up = 0x41;
    setFlags("IfNet/Transport", up | 2);
    EXPECT_EQ(isDown("IfNet/Transport"), false);
    setFlags("IfNet/Transport", 1); // not running
    EXPECT_EQ(isDown("IfNet/Transport"), true);
    EXPECT_EQ(isDown("IfNet/Lmp"), false);
    setFlags("IfNet/Transport", up);
    EXPECT_EQ(isDown("IfNet/Transport"), false);
}

// Whatever a unit came to hold, its scenario makes another one hold it.
TEST(Scenario, MakesAnotherUnitHoldTheSame)
{
    TreflectHandlerState const running;
    auto const call = [](char const* id, char const* type, char const* operation, std::vector<Value> const& in) {
        return trs::catalogue::call(TipprmiObjectClient(TipprmiOID(id)),
                                    *trs::catalogue::findClass(type)->find(operation), in);
    };
    auto unit = std::make_unique<trs::sim::Unit>(trs::sim::Unit::Options{"10.0.0.7", 4, true});
    Value const fresh = trs::sim::scenario::save(*unit);
    call("IfNet/Transport", "EthIfNet", "deleteVlan", {100});
    trs::catalogue::Operation const& createVlan = *trs::catalogue::findClass("EthIfNet")->find("createVlan");
    std::vector<Value> least{trs::catalogue::zero(*createVlan.parameters[0].type)};
    trs::catalogue::bringWithin(createVlan, least); // what is created holds what it would be set to
    EXPECT_EQ(call("IfNet/Lmp", "EthIfNet", "createVlan", least).kind, Outcome::Kind::done);
    call("IfNet/Transport", "IfNet", "setMtu", {1400});
    call("IfNet/Transport", "IfNet", "setFlags", {0});
    call("IpNode", "IpNode", "setIpConfig", {"x", "10.0.0.1", "10.0.0.2", 3, "text"});
    call("IpNode", "IpNode", "deleteIp3IfNet", {"Ip3IfNet:IfNet/Ppp/1"});
    call("Access/RuleManager", "RmAccess", "deleteRuleset", {"input"});
    call("Access/Ntp", "NtpAccess", "createNtpServer", {"10.0.0.3", 5});
    call("IfNet/Lmp", "EthIfNet", "createProxyArp", {"10.0.0.9"});
    call("AppObject-1/PerformanceService", "PerformanceService", "stopMonitoring", {2});
    call("HwmUnit-1", "HwmUnit", "createModule", {3, "new"});
    unit->create("Bfd/2", "BfdIpIubClient");
    unit->advance(1000);
    unsigned long number = 0;
    unit->misbehaviours().inject({"late", "IfNet.getMtu", "IfNet/Lmp", 2, 3, 500, 20}, number);
    Value const saved = trs::sim::scenario::save(*unit);
    EXPECT_NE(saved, fresh);

    unit.reset();
    unit = std::make_unique<trs::sim::Unit>(trs::sim::Unit::Options{"10.0.0.7", 4, true});
    EXPECT_EQ(trs::sim::scenario::save(*unit), fresh) << "the same seed gives the same unit";
    EXPECT_EQ(trs::sim::scenario::apply(*unit, saved), "");
    EXPECT_EQ(Value::diff(saved, trs::sim::scenario::save(*unit)), Value::array());

    unit.reset();
    unit = std::make_unique<trs::sim::Unit>(trs::sim::Unit::Options{"10.0.0.7", 5, true});
    unit->advance(1);
    Value const other = trs::sim::scenario::save(*unit);
    EXPECT_NE(other["objects"], fresh["objects"]) << "another seed gives other counters";
}

// A scenario need not say everything, and may have an object tell what it would not.
TEST(Scenario, ChangesWhatItNames)
{
    TreflectHandlerState const running;
    trs::sim::Unit unit;
    std::size_t const before = unit.inventory().all().size();
    Value const document = Value::parse(R"({"objects": {
        "VlanIfNet:IfNet/Transport/Vlan/100": null,
        "VlanIfNet:IfNet/Lmp/Vlan/5": {"getMtu": {"mtu": 1300}},
        "HwmUnit:HwmUnit-1": {"getSerialNumber": {"number": "SERIAL"}},
        "Condition:AppObject-1/Condition/los": {"isActive": {"result": true}}}})");
    EXPECT_EQ(trs::sim::scenario::apply(unit, document), "");
    EXPECT_EQ(unit.inventory().find("IfNet/Transport/Vlan/100"), nullptr);
    EXPECT_EQ(unit.inventory().all().size(), before);
    long mtu = 0;
    EXPECT_TRUE(IfNetClient(TipprmiOID("IfNet/Lmp/Vlan/5")).getMtu(mtu) == GetClient::OK);
    EXPECT_EQ(mtu, 1300);
    std::string serial;
    EXPECT_TRUE(HwmUnitClient(TipprmiOID("HwmUnit-1")).getSerialNumber(serial) == GetClient::OK);
    EXPECT_EQ(serial, "SERIAL");
    EXPECT_EQ(unit.object().faults().proxy().getOperState(), FaultServiceClient::DISABLED);

    struct {
        char const* document;
        char const* complaint;
    } const cases[] = {
        {"[]", "a JSON object"},
        {R"({"object": {}})", "'object' is nothing"},
        {R"({"time": -1})", "\"time\""},
        {R"({"objects": []})", "\"objects\""},
        {R"({"objects": {"IpNode:": {}}})", "'IpNode:' is no object"},
        {R"({"objects": {"Nothing:x": {}}})", "'Nothing' is no class"},
        {R"({"objects": {"IfNet:IpNode": {}}})", "'IpNode' is of class IpNodeClient"},
        {R"({"objects": {"IpNode:IpNode": null}})", "'IpNode' cannot be removed"},
        {R"({"objects": {"IpNode:IpNode": 1}})", "'IpNode' is not described"},
        {R"({"objects": {"IpNode:IpNode": {"getNothing": {}}}})", "'getNothing' is no fact and no operation"},
        {R"({"objects": {"IpNode:IpNode": {"finalize": {}}}})", "'finalize' reads nothing"},
        {R"({"objects": {"IpNode:IpNode": {"getMtu": 5}}})", "the results are no object"},
        {R"({"objects": {"IpNode:IpNode": {"getMtu": {"mtu": "x"}}}})", "\"x\" is no number"},
        {R"({"objects": {"IpNode:IpNode": {"getIpConfig": [{}]}}})", "name is missing"},
        {R"({"objects": {"LocationId:IfNet/Lmp/LocationId": {"equals": [{"result": true}]}}})",
         "cannot be made to tell"},
        {R"({"faults": ["burn"]})", "'burn' is no kind of fault"},
        {R"({"faults": ["cut operation=IfNet.x"]})", "'x' is no operation of IfNetClient"},
    };
    for (auto const& [text, complaint] : cases) {
        EXPECT_THAT(trs::sim::scenario::apply(unit, Value::parse(text)), testing::HasSubstr(complaint)) << text;
    }
}

} // namespace
