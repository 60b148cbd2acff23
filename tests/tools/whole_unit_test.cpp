// The simulated unit in this process: all interfaces, and what its objects keep.
#include "tools/catalogue/Call.h"
#include "tools/catalogue/ObjectName.h"
#include "tools/trssim/Equipment.h"
#include "tools/trssim/IpNode.h"

#include "rmi/TreflectHandlerState.h"
#include "tests/support/Sockets.h"
#include "tools/trssim/ApplicationObject.h"
#include "tools/trssim/UnitAgent.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>

namespace {

using catalogue::Class;
using catalogue::Operation;
using catalogue::Outcome;
using catalogue::Type;
using catalogue::Value;

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
            for (catalogue::Field const& field : type.fields) {
                record[std::string(field.name)] = sample(*field.type);
            }
            return record;
        }
        default:
            return 1;
        }
    }
    static std::vector<Value> samples(Operation const& operation)
    {
        std::vector<Value> values;
        for (catalogue::Parameter const& parameter : operation.parameters) {
            if (parameter.isIn) {
                values.push_back(sample(*parameter.type));
            }
        }
        return values;
    }
    static Outcome call(std::string const& id, Class const& type, char const* operation,
                        std::vector<Value> const& in = {})
    {
        return catalogue::call(TipprmiObjectClient(TipprmiOID(id)), *type.find(operation), in);
    }
    static Class const& classOf(char const* name) { return *catalogue::findClass(name); }

    TreflectHandlerState const running;
    sim::Inventory inventory;
    sim::UnitAgent agent{""};
    sim::ApplicationObject object{"AppObject-1"};
    sim::IpNode ipNode{inventory};
    sim::Equipment equipment{inventory};
};

TEST_F(WholeUnit, AnswersEveryOperationOfEveryInterface)
{
    inventory.add(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME, classOf("NmiRmiAdapter"));
    std::size_t count = 0;
    for (Class const* const type : catalogue::classes()) {
        auto const entry = std::ranges::find_if(
            inventory.all(), [type](sim::Inventory::Entry const& each) { return sim::isA(*each.type, type->name); });
        ASSERT_NE(entry, inventory.all().end()) << type->name;
        TipprmiObjectClient const proxy{TipprmiOID(entry->id)};
        for (Operation const& operation : type->own) {
            Outcome const outcome = catalogue::call(proxy, operation, samples(operation));
            bool const isAnswered = outcome.kind == Outcome::Kind::done || outcome.kind == Outcome::Kind::refused;
            EXPECT_TRUE(isAnswered) << type->name << ' ' << operation.name << " of " << entry->id << ": "
                                    << outcome.failure.reason << outcome.wrong;
            ++count;
        }
    }
    EXPECT_EQ(count, 573U);
}

// What an object takes is what it tells.
TEST_F(WholeUnit, TellsWhatItWasTold)
{
    std::size_t count = 0;
    std::vector<sim::Inventory::Entry> const entries = inventory.all();
    for (auto const& [id, type] : entries) {
        TipprmiObjectClient const proxy{TipprmiOID(id)};
        for (Operation const* const setter : type->operations()) {
            Operation const* const reader =
                setter->name.starts_with("set") ? type->find("get" + std::string(setter->name.substr(3))) : nullptr;
            if (reader == nullptr || setter->parameters.size() != 1 || reader->parameters.size() > 1 ||
                (reader->parameters.size() == 1 && reader->parameters[0].isIn)) {
                continue;
            }
            Type const* const told = reader->parameters.empty() ? reader->result : reader->parameters[0].type;
            if (told != setter->parameters[0].type || sim::isA(*type, "FaultServiceClient") ||
                told->kind == Type::Kind::object || setter->name == "setVlanTags") { // which are those of the VLANs
                continue;
            }
            Value const value = sample(*told);
            if (catalogue::call(proxy, *setter, {value}).kind == Outcome::Kind::refused) {
                continue;
            }
            Outcome const outcome = catalogue::call(proxy, *reader, {});
            ASSERT_EQ(outcome.kind, Outcome::Kind::done);
            TipprmiStream expected(100);
            TipprmiStream actual(100);
            EXPECT_EQ(catalogue::writeValue(expected, *told, value), "");
            EXPECT_EQ(catalogue::writeValue(actual, *told, outcome.results.begin().value()), "");
            EXPECT_EQ(std::string(expected.data(), expected.data() + expected.size()),
                      std::string(actual.data(), actual.data() + actual.size()))
                << id << ' ' << setter->name;
            ++count;
        }
    }
    EXPECT_GT(count, 150U);
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
    Value params = sample(*ifNet.find("createVlan")->parameters[0].type);
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
    Operation const& operation = *classOf("NtpAccess").find("setNtpEnabled");
    TipprmiStream request(100);
    TipprmiStream reply(100);
    proxy.prepareRequestStream_(true, operation.classId, operation.index, request).marshall("xy", 2);
    EXPECT_FALSE(proxy.dispatch(true, operation.classId, operation.index, request, reply));
    EXPECT_EQ(host::lastCallFailure().kind, host::CallFailure::Kind::refused);
    EXPECT_EQ(call("Access/Ntp", classOf("NtpAccess"), "getNtpEnabled").results["enabled"], false);
}

} // namespace
