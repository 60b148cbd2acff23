// The catalogue at run time, against the golden record, and values of its types as text, JSON and bytes.
#include "catalogue/Class.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Json.h"
#include "catalogue/Value.h"
#include "catalogue/ValueText.h"
#include "platform/TipprmiStream.h"
#include "tests/support/GoldenRecord.h"

#include <gmock/gmock.h>

#include <cstdio>

namespace {

using trs::catalogue::Class;
using trs::catalogue::Type;
using trs::catalogue::Value;

std::string line(Class const& each, trs::catalogue::Operation const& operation)
{
    std::string parameters;
    for (trs::catalogue::Parameter const& parameter : operation.parameters) {
        parameters +=
            std::string(parameters.empty() ? "" : "; ") + (parameter.isIn ? "in " : "out ") + parameter.type->text();
    }
    char id[11];
    std::snprintf(id, sizeof id, "0x%08x", static_cast<unsigned>(operation.classId));
    return std::string(each.name) + '\t' + std::string(each.interface) + '\t' + id + '\t' + std::string(each.baseName) +
           "\t*\t*\t" + std::to_string(operation.index) + '\t' + std::string(operation.name) + '\t' +
           (parameters.empty() ? "-" : parameters) + '\t' +
           (operation.result != nullptr ? operation.result->text() : "void");
}

// Without the columns of meta parent and road, which the run-time catalogue does not have.
std::string comparable(std::string golden)
{
    std::size_t begin = 0;
    for (int column = 0; column < 4; ++column) {
        begin = golden.find('\t', begin) + 1;
    }
    std::size_t const end = golden.find('\t', golden.find('\t', begin) + 1);
    return golden.replace(begin, end - begin, "*\t*");
}

TEST(RunTimeCatalogue, HasEveryOperationOfTheGoldenRecordWithItsParametersNamed)
{
    std::size_t count = 0;
    std::size_t other = 0;
    for (Class const* const each : trs::catalogue::classes()) {
        auto const listed = golden::lines().find(each->name);
        if (listed == golden::lines().end()) {
            EXPECT_TRUE(each->name.starts_with("Qel") || each->name == "SimulatorClient") << each->name;
            ++other;
            continue;
        }
        std::vector<std::string> const& golden = listed->second;
        ASSERT_TRUE(golden.size() == each->own.size() || each->own.empty()) << each->name;
        for (std::size_t i = 0; i < each->own.size(); ++i, ++count) {
            trs::catalogue::Operation const& operation = each->own[i];
            EXPECT_EQ(line(*each, operation), comparable(golden[i]));
            EXPECT_EQ(operation.parameterNames().size(), operation.parameters.size()) << operation.name;
            EXPECT_FALSE(operation.comment().empty()) << each->name << ' ' << operation.name;
        }
        EXPECT_EQ(trs::catalogue::findClass(each->id), each);
        EXPECT_EQ(trs::catalogue::findClass(each->interface), each);
    }
    EXPECT_EQ(count, golden::operationCount());
    EXPECT_EQ(trs::catalogue::classes().size(), golden::lines().size() + other);
    EXPECT_EQ(trs::catalogue::findClass("VlanIfNet")->find("getMtu")->className, "IfNetClient");
    EXPECT_EQ(trs::catalogue::findClass("IfNet")->find("setMtu")->signature(),
              "ResponseInfo<SetClient> setMtu(in long mtu)");
}

Type const& inType(char const* className, char const* operation, std::size_t parameter = 0)
{
    return *trs::catalogue::findClass(className)->find(operation)->parameters[parameter].type;
}

// What a value becomes on the wire and back.
std::string thereAndBack(Type const& type, Value const& value)
{
    TipprmiStream stream(100);
    std::string const wrong = trs::catalogue::writeValue(stream, type, value);
    if (!wrong.empty()) {
        return wrong;
    }
    Value const read = trs::catalogue::readValue(stream, type);
    EXPECT_FALSE(stream.hasUnmarshallingFailed());
    EXPECT_EQ(stream.available(), 0U);
    return trs::catalogue::toJson(read, -1);
}

TEST(Values, AreReadAndWrittenAsPeopleWriteThem)
{
    Type const& number = inType("IfNet", "setMtu");
    Type const& flags = inType("IfNet", "setFlags");
    Type const& name = inType("IpNode", "getIpConfig");
    Type const& address = inType("IpNode", "setIpConfig", 1);
    Type const& count = inType("IpNode", "setIpConfig", 3);
    Type const& activation = inType("IfNet", "setDiscardPrivate");
    Type const& hardware = inType("EthIfNet", "getEthernetAddress");
    Type const& addresses = inType("IfNet", "setIpAddrSequence");
    Type const& location = inType("LocationId", "equals");
    Type const& notification = inType("FaultService", "notificationFromCondition");
    std::string const entry =
        R"({"ipAddress":"10.0.0.1","address2":"0.0.0.0","address3":"0.0.0.0","address4":"0.0.0.0"})";
    struct {
        Type const& type;
        std::string text;
        std::string outcome; // as JSON, or what is wrong
    } const cases[] = {
        {number, "-2147483648", "-2147483648"},
        {number, "0x10", "16"},
        {number, "2147483648", "2147483648 is no number from -2147483648 to 2147483647"},
        {number, "1.5", R"("1.5" is no number from -2147483648 to 2147483647)"},
        {number, "", R"("" is no number from -2147483648 to 2147483647)"},
        {number, "true", "true is no number from -2147483648 to 2147483647"},
        {flags, "65535", "65535"},
        {flags, "65536", "65536 is no number from 0 to 65535"},
        {count, "4294967295", "4294967295"},
        {count, "-1", "-1 is no number from 0 to 4294967295"},
        {activation, "true", "true"},
        {activation, "1", "1 is neither true nor false"},
        {name, "12", R"("12")"},
        {address, "10.0.0.255", R"("10.0.0.255")"},
        {address, "10.0.0.256", R"("10.0.0.256" is no address such as 10.0.0.1)"},
        {address, "10.0.0", R"("10.0.0" is no address such as 10.0.0.1)"},
        {address, "10.0.0.1.", R"("10.0.0.1." is no address such as 10.0.0.1)"},
        {address, "[1,-2,3,300]", "[1,-2,3,300]"},
        {address, "[1,2,3]", "an array of 3 elements, not 4"},
        {hardware, "02:00:5e:10:00:ff", R"("02:00:5e:10:00:ff")"},
        {hardware, "02:00:5e:10:00:fg", R"("02:00:5e:10:00:fg" is no address such as 02:00:5e:10:00:01)"},
        {addresses, "[]", "[]"},
        {addresses, "[" + entry + "]", "[" + entry + "]"},
        {addresses, R"([{"ipAddress":"10.0.0.1"}])", "[0]: 'address2' is missing, a field of IfNetClient::IpAddrInfo"},
        {addresses, R"([{"ip":"10.0.0.1"}])", "[0]: 'ip' is no field of IfNetClient::IpAddrInfo"},
        {addresses, "[{]", "'[{]' is no JSON"},
        {addresses, "@/nowhere", "'/nowhere' cannot be read: No such file or directory"},
        {location, "LocationId:a/b:c", R"("LocationId:a/b:c")"},
        {location, "none", "null"},
        {location, "a/b",
         "'a/b' is no object: it is neither Class:identifier nor a well-known IpNode or "
         "NmiRmiAdapterServer"},
        {notification, "CONDITION_NOTIFICATION_1", R"("CONDITION_NOTIFICATION_1")"},
        {notification, "2", R"("CONDITION_NOTIFICATION_2")"},
        {notification, "77", "77"},
        {notification, "x",
         R"("x" is none of CONDITION_NOTIFICATION_0, CONDITION_NOTIFICATION_1, )"
         "CONDITION_NOTIFICATION_2, CONDITION_NOTIFICATION_3, or a number"},
    };
    for (auto const& [type, text, outcome] : cases) {
        Value value;
        std::string const wrong = trs::catalogue::parseValue(type, text, value);
        EXPECT_EQ(wrong.empty() ? thereAndBack(type, value) : wrong, outcome) << text;
    }
    Value nested = Value::parse("[" + entry + "," + entry + "]");
    nested[1]["address3"] = "10.0.0.x";
    EXPECT_EQ(thereAndBack(addresses, nested), R"([1].address3: "10.0.0.x" is no address such as 10.0.0.1)");
}

TEST(Values, OfAReplyThatLiesAreNoneAndTakeNoMemory)
{
    TipprmiStream stream(100);
    stream.marshall("\xff\xff\xff\xff\0\0\0\1", 8);
    trs::catalogue::readValue(stream, inType("IfNet", "setIpAddrSequence"));
    EXPECT_TRUE(stream.hasUnmarshallingFailed());
}

TEST(Values, HaveLeavesWithTheirPaths)
{
    std::string leaves;
    trs::catalogue::forEachLeaf(Value::parse(R"({"a":[{"b":1,"c":null},{"b":[],"c":"x\n"}],"d":true})"),
                                [&leaves](std::string const& path, Value const& leaf) {
                                    leaves += path + '=' + trs::catalogue::textOf(leaf) + ' ';
                                });
    EXPECT_EQ(leaves, "a[0].b=1 a[0].c=none a[1].b=[] a[1].c=x\n d=true ");
}

// JSON may be read on a terminal, and must be what it was.
TEST(Values, AreJsonWithoutControlCharacters)
{
    std::string const text = "\x1b[2J\x7f \xc2\x9b"
                             "2J\xc2\x85 \xc2\xa0\xc3\x84 \\x9b";
    Value const value{{text, text + std::string(2000, 'x') + "\xc2\x80"}};
    for (int const indent : {-1, 2}) {
        std::string const json = trs::catalogue::toJson(value, indent);
        EXPECT_THAT(json, testing::HasSubstr("\\u001b[2J\\u007f \\u009b2J\\u0085 \xc2\xa0\xc3\x84 \\\\x9b"));
        EXPECT_EQ(json.find_first_of("\x1b\x7f"), std::string::npos);
        EXPECT_EQ(Value::parse(json), value);
    }
}

// People write and read the constants that classes publish by name.
TEST(Constants, StandForTheirNumbers)
{
    struct {
        char const* type;
        char const* operation;
        Value written;
        Value number; // null: not taken
    } const cases[] = {
        {"IpNode", "setTransportMode", "TRANSPORT_MODE_DUALIUB", 2},
        {"VlanIfNet", "setFlags", "IFF__UP|IFF__MULTICAST", 0x8001}, // of a base
        {"IpNode", "setTransportMode", "TRANSPORT_MODE", {}},
        {"IpNode", "setTransportMode", "BTS_ID", {}}, // a text
        {"IpNode", "setTransportMode", "IFF__UP", {}},
        {"VlanIfNet", "setFlags", "IFF__UP|0x8000|4", 0x8005},
        {"VlanIfNet", "setFlags", "IFF__UP|IFF__NOPE", {}},
        {"VlanIfNet", "setFlags", "7x", "7x"}, // which writing it tells
        {"IpNode", "setTransportMode", "|", {}},
        {"IpRoutingTable", "storeIpForwardingSequence", {{{"flags", "RTF__UP|RTF__HOST"}}}, {{{"flags", 5}}}},
        {"IpNode", "createAtmIfNet", {{"ifNetParams", {{"flags", "IFF__UP"}}}}, {{"ifNetParams", {{"flags", 1}}}}},
    };
    for (auto const& [type, operation, written, number] : cases) {
        Class const& owner = *trs::catalogue::findClass(type);
        Value value = written;
        std::string const wrong =
            trs::catalogue::resolveConstants(owner, *owner.find(operation), inType(type, operation), value);
        EXPECT_EQ(wrong.empty(), !number.is_null()) << operation << ' ' << written << ' ' << wrong;
        EXPECT_EQ(value, number.is_null() ? written : number) << operation;
    }

    trs::catalogue::Operation const& getFlags = *trs::catalogue::findClass("IfNet")->find("getFlags");
    auto const named = [](trs::catalogue::Operation const& operation, Value results) {
        trs::catalogue::nameConstants(operation, results);
        return results.begin().value();
    };
    EXPECT_EQ(named(getFlags, {{"flags", 0x8001}}), "IFF__UP|IFF__MULTICAST");
    EXPECT_EQ(named(getFlags, {{"flags", 0x1001}}), 0x1001) << "a bit without a name";
    EXPECT_EQ(named(getFlags, {{"flags", 0}}), 0);
    EXPECT_EQ(named(*trs::catalogue::findClass("IpNode")->find("getMtu"), {{"mtu", 1}}), 1) << "no constant is meant";
    EXPECT_EQ(named(*trs::catalogue::findClass("FaultService")->find("getOperState"), {{"result", 12}}), "DISABLED");
    EXPECT_EQ(named(*trs::catalogue::findClass("IpRoutingTable")->find("getIpRouteSequence"),
                    {{"routes", {{{"flags", 3}, {"other", 3}}}}}),
              Value({{{"flags", "RTF__UP|RTF__GATEWAY"}, {"other", 3}}}));
    EXPECT_EQ(named(*trs::catalogue::findClass("Aal5Profile")->find("getAalMode"), {{"result", 1}}),
              "ASSURED_STREAMING");
    EXPECT_EQ(named(*trs::catalogue::findClass("EthIfNet")->find("setCir"), {{"cir", 0}}), 0) << "a bound is no name";
}

} // namespace
