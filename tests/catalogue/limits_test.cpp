// What operations' arguments may be, as the headers say it.
#include "catalogue/LimitTable.h"
#include "catalogue/Limits.h"
#include "platform/TipprmiStream.h"

#include <fstream>
#include <gmock/gmock.h>
#include <set>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using trs::catalogue::Class;
using trs::catalogue::Type;
using trs::catalogue::Value;

trs::catalogue::Operation const& operationOf(char const* type, char const* operation)
{
    return *trs::catalogue::findClass(type)->find(operation);
}

std::vector<std::string> lines(trs::catalogue::Operation const& operation, std::vector<Value> const& in)
{
    std::vector<std::string> texts;
    for (trs::catalogue::Violation const& each : trs::catalogue::violations(operation, in)) {
        texts.push_back(each.text());
    }
    return texts;
}

std::vector<Value> zeros(trs::catalogue::Operation const& operation)
{
    std::vector<Value> values;
    for (trs::catalogue::Parameter const& parameter : operation.parameters) {
        if (parameter.isIn) {
            values.push_back(trs::catalogue::zero(*parameter.type));
        }
    }
    return values;
}

std::vector<trs::catalogue::Operation const*> operationsWithLimits()
{
    std::vector<trs::catalogue::Operation const*> operations;
    for (Class const* const type : trs::catalogue::classes()) {
        for (trs::catalogue::Operation const& operation : type->own) {
            if (trs::catalogue::hasLimits(operation)) {
                operations.push_back(&operation);
            }
        }
    }
    return operations;
}

TEST(Limits, OfTheHeadersBelongToParametersAndFields) { EXPECT_THAT(trs::catalogue::wrongLimits(), IsEmpty()); }

// What would be wrong, and what parts would be limited, if an operation had this comment.
TEST(Limits, ThatCommentsCannotMeanAreErrors)
{
    struct {
        char const* type;
        char const* operation;
        char const* comment;
        std::string outcome;
    } const cases[] = {
        {"IfNet", "setMtu", "Sets it... from 68 to 65535, as of setFlags; see setMtu().", ""},
        {"IfNet", "setMtu", "Sets it (1..5).", "mtu 1..5;"},
        {"IfNet", "setMtu", "Sets it: as IpNodeClient::setMtu(), which refers on.", "mtu 68..65535;"},
        {"IfNet", "setMtu", "Sets it (as setInternalMtu()).", "mtu 68..65535;"},
        {"IfNet", "getMtu", "Reads it: 1..5.", "mtu 1..5;"},
        {"ApplicationObject", "hasLocationId", "Reads it: 0..1.", "a value of type bool cannot be limited to 0..1"},
        {"VirtualChannelTrailTp", "init", "Takes `vccTp`, `value` -5..5.", "value -5..5;"},
        {"VirtualChannelTrailTp", "init", "Takes one of a value of 0..5.", "'of' before 0..5 is no parameter"},
        {"IpNode", "setIpConfig", "Sets name 1..8 characters, number 1..9 step 2 or 20..30.",
         "name 1..8 characters;number 1..9 step 2 or 20..30;"},
        {"IpNode", "finalize", "Ends it within 1..5 seconds.", "'within' before 1..5 is no parameter"},
        {"IfNet", "setMtu", "Sets it: 5..1.", "'5..1': no numbers"},
        {"IfNet", "setMtu", "Sets it: 1..IFF__NOPE.", "'1..IFF__NOPE': no numbers"},
        {"IfNet", "setMtu", "Sets it: 1..5 step 0.", "'1..5': no numbers"},
        {"IfNet", "setMtu", "Sets it: 1..5 or 7..x.", "'1..5': no numbers"},
        {"IfNet", "setMtu", "Sets it: 0..4294967296.", "a value of type long cannot be limited to 0..4294967296"},
        {"IfNet", "setMtu", "Sets it: 0..5 characters.", "a value of type long cannot be limited to 0..5 characters"},
        {"IfNet", "setMtu", "Sets it: 1..5, on the others 1..9.", "1..9 is a second limit of the same"},
        {"IfNet", "setDiscardPublic", "Sets it: 0..1.", "a value of type bool cannot be limited to 0..1"},
        {"IpNode", "setMtu", "Sets it: contiguous netmask.", "a value of type long cannot be limited to a contiguous"},
        {"IpNode", "setMtu", "Sets it: as setNothing().", "as setNothing(): no operation with one limit"},
        {"IpNode", "setMtu", "Sets it: as setModuleId().", "as setModuleId(): no operation with one limit"},
        {"IpNode", "setModuleId", "Sets it: one of TRANSPORT_MODE_IUBIP..TRANSPORT_MODE_ATMOETH.", "no two constants"},
        {"IpNode", "setModuleId", "Sets it: one of BTS_ID..QUBO_ID.", "cannot be limited to one of BTS_ID"},
        {"IpNode", "setModuleId", "Sets it: a MODULE_ constant.", "'MODULE_': no constant begins so"},
        {"IpNode", "setModuleId", "Sets it: OMS_TLS_MODE_ bits.", // bits 1 and 2
         "moduleId made of the bits OMS_TLS_MODE_OFF (0), OMS_TLS_MODE_FORCED (1), OMS_TLS_MODE_PROBING (2);"},
    };
    for (auto const& [type, name, comment, outcome] : cases) {
        std::vector<std::string> wrong;
        std::string told;
        for (auto const& each : trs::catalogue::limitedValues(operationOf(type, name), comment, wrong)) {
            for (trs::catalogue::Limit const& limit : each.limits) {
                told += each.name + ' ' + limit.text() + ';';
            }
        }
        EXPECT_THAT(wrong.empty() ? told : wrong.front(), testing::HasSubstr(outcome)) << comment;
        EXPECT_EQ(wrong.empty(), outcome.empty() || outcome.ends_with(';')) << comment;
    }
}

// Every kind of limit, with values below, at and above its bounds.
TEST(Limits, TellWhichValuesAreOutside)
{
    struct {
        char const* type;
        char const* operation;
        std::vector<Value> in;
        std::vector<std::string> wrong;
    } const cases[] = {
        {"IfNet", "setMtu", {67}, {"mtu: 67 is not 68..65535"}},
        {"IfNet", "setMtu", {68}, {}},
        {"VlanIfNet", "setMtu", {65535}, {}}, // inherited
        {"IfNet", "setMtu", {65536}, {"mtu: 65536 is not 68..65535"}},
        {"IfNet", "setMtu", {-7}, {"mtu: -7 is not 68..65535"}},
        {"IpNode", "setMtu", {67}, {"mtu: 67 is not 68..65535"}},
        {"EthIfNet", "setShapedBandwidth", {500}, {}},
        {"EthIfNet", "setShapedBandwidth", {400}, {"bandwidth: 400 is not 500..1000000 step 100"}},
        {"EthIfNet", "setShapedBandwidth", {550}, {"bandwidth: 550 is not 500..1000000 step 100"}},
        {"EthIfNet", "setShapedBandwidth", {1000100}, {"bandwidth: 1000100 is not 500..1000000 step 100"}},
        {"TransportModePar", "setCacCommittedBitRate", {399}, {"rate: 399 is not 400..1000000"}},
        {"AtmTrafficDescriptor", "setEgressClrClp0_1", {10}, {"exponent: 10 is not 0..9"}},
        {"IfNetBfdIpIub", "setBfdTimer", {{{"value1", 500}, {"value2", 0}, {"value3", 10}}}, {}},
        {"IfNetBfdIpIub",
         "setBfdTimer",
         {{{"value1", 1}, {"value2", 5500}, {"value3", 750}}},
         {"timer.value1: 1 is not 0 or 2..10 or 500..5000 step 500",
          "timer.value2: 5500 is not 0 or 2..10 or 500..5000 step 500",
          "timer.value3: 750 is not 0 or 2..10 or 500..5000 step 500"}},
        {"IpNode", "setOmsTlsMode", {0}, {}},
        {"IpNode", "setOmsTlsMode", {2}, {}},
        {"IpNode",
         "setOmsTlsMode",
         {3},
         {"mode: 3 is not one of OMS_TLS_MODE_OFF (0), OMS_TLS_MODE_FORCED (1), OMS_TLS_MODE_PROBING (2)"}},
        {"FaultService", "setOperState", {11}, {}},
        {"FaultService", "setOperState", {1}, {"state: 1 is not one of ENABLED (11), DISABLED (12)"}},
        {"TransmissionPort", "setSsmValueRx", {14}, {}},
        {"NmiRmiAdapter", "sendAlarmRmi", {{{"type", "ALARM_TYPE_1"}, {"state", 2}}}, {}},
        {"NmiRmiAdapter",
         "sendAlarmRmi",
         {{{"type", 2}, {"state", "ALARM_STATE_0"}}},
         {"alarm.type: 2 is not one of ALARM_TYPE_0 (0), ALARM_TYPE_1 (1)"}},
        {"EthLink", "setSpeedAndDuplex", {77}, {}}, // of which the values are the server's
        {"IfNet", "setFlags", {0xffff}, {}},        // three of which have no name
        {"DsvmEntry", "init", {{{"trafficType", "CONTROL"}, {"vlanId", 0}, {"marking", 63}}}, {}},
        {"DsvmEntry",
         "init",
         {{{"trafficType", "Control"}, {"vlanId", 4095}, {"marking", 64}}},
         {"initial.trafficType: \"Control\" is not one of MANAGEMENT_ALL, CONTROL, REAL_TIME_USER_PLANE, "
          "NON_REAL_TIME_USER_PLANE",
          "initial.vlanId: 4095 is not 0..4094", "initial.marking: 64 is not 0..63"}},
        {"EthIfNet", "createVlan", {{{"vlanId", 4094}, {"sir", 0}, {"shaperBurstSize", 1522}}}, {}},
        {"EthIfNet",
         "createVlan",
         {{{"vlanId", 5000}, {"sir", 50}, {"shaperBurstSize", 1521}}},
         {"params.vlanId: 5000 is not 1..4094", "params.sir: 50 is not 0..1000000 step 100",
          "params.shaperBurstSize: 1521 is not 1522..2000000"}},
        {"EthIfNet", "setVlanTags", {{1, 4094, 0, 7}}, {"tags[2]: 0 is not 1..4094"}},
        {"VlanIfNetFabric", "create", {"5", {{"vlanId", 0}}}, {"params.vlanId: 0 is not 1..4094"}},
        {"Aal5Profile", "setNmaLabel", {std::string(20, 'x')}, {}},
        {"Aal5Profile", "setNmaLabel", {std::string(21, 'x')}, {"label: 21 characters is not 0..20 characters"}},
        {"NtpAccess", "setNtpDaemon", {Value::array()}, {}},
        {"NtpAccess", "setNtpDaemon", {Value::array({{}, {}, {}, {}})}, {"servers: 4 entries is not 0..3 entries"}},
        {"BfdIpIub", "setBfdDestAddress", {"10.0.0.255"}, {}},
        {"BfdIpIub",
         "setBfdDestAddress",
         {{10, 0, -1, 256}},
         {"address[2]: -1 is not 0..255", "address[3]: 256 is not 0..255"}},
        {"RmAccess",
         "setRuleset",
         {{{"exceptions",
            {{{"endpoints",
               {{{"port", {{"range", {{"first", 65535}, {"second", 65536}}}, {"ports", {0, 70000}}}}}}}}}}}},
         {"ruleset.exceptions[0].endpoints[0].port.range.second: 65536 is not 0..65535",
          "ruleset.exceptions[0].endpoints[0].port.ports[1]: 70000 is not 0..65535"}},
        // What cannot be sent is told when it is written.
        {"IfNet", "setMtu", {"wide"}, {}},
        {"IfNet", "setMtu", {UINT64_MAX}, {}},
        {"IfNet", "setMtu", {}, {}},
        {"EthIfNet", "createVlan", {7}, {}},
    };
    for (auto const& [type, operation, in, wrong] : cases) {
        EXPECT_EQ(lines(operationOf(type, operation), in), wrong) << operation << ' ' << testing::PrintToString(in);
    }
    EXPECT_FALSE(trs::catalogue::hasLimits(operationOf("IfNet", "setDiscardPrivate")));
    EXPECT_FALSE(trs::catalogue::hasLimits(operationOf("IpNode", "getTransportMode"))) << "what is told is not checked";
}

TEST(Limits, OfANetmaskAllowOnesThatZerosFollow)
{
    struct {
        Value mask;
        bool isAllowed;
    } const cases[] = {
        {"0.0.0.0", true},
        {"255.255.255.255", true},
        {"255.255.254.0", true},
        {"128.0.0.0", true},
        {"255.0.255.0", false},
        {"0.0.0.255", false},
        {"127.255.255.255", false},
        {"255.255.255.1", false},
        {{255, 255, 0, 0}, true},
        {{0, 255, 0, 0}, false},
        // none of which is an address, as writing it tells
        {"255.0.255", true},
        {"255.0.256.0", true},
        {"1.2.3.4.", true},
        {"", true},
    };
    for (auto const& [mask, isAllowed] : cases) {
        std::vector<Value> const routes{Value::array({{{"netmask", "255.0.0.0"}}, {{"netmask", mask}}})};
        std::string const shown = mask.is_string() ? mask.get<std::string>() : mask.dump();
        EXPECT_EQ(lines(operationOf("IpRoutingTable", "applyIpRouteEntriesCfg"), routes),
                  isAllowed ? std::vector<std::string>()
                            : std::vector<std::string>{"routes[1].netmask: " + shown + " is not a contiguous netmask"});
    }
}

TEST(Limits, AreToldUpToANumberOfThem)
{
    std::vector<Value> const in{Value(std::vector<int>(1000, 4095))};
    trs::catalogue::Operation const& operation = operationOf("EthIfNet", "setVlanTags");
    EXPECT_EQ(trs::catalogue::violations(operation, in).size(), 1000U);
    EXPECT_EQ(trs::catalogue::violations(operation, in, 3).back().path, "tags[2]");
}

// Where a unit that is told zeros would refuse them.
TEST(Limits, RefuseZerosOfTheseOperationsAlone)
{
    std::set<std::string> refused;
    for (trs::catalogue::Operation const* const operation : operationsWithLimits()) {
        std::vector<Value> values = zeros(*operation);
        for (trs::catalogue::Violation const& each : trs::catalogue::violations(*operation, values)) {
            refused.insert(std::string(operation->className) + '.' + std::string(operation->name) + ' ' + each.path);
        }
        trs::catalogue::bringWithin(*operation, values);
        EXPECT_THAT(lines(*operation, values), IsEmpty());
        std::size_t place = 0;
        for (trs::catalogue::Parameter const& parameter : operation->parameters) {
            TipprmiStream stream(100);
            if (parameter.isIn) {
                EXPECT_EQ(trs::catalogue::writeValue(stream, *parameter.type, values[place++]), "") << operation->name;
            }
        }
    }
    EXPECT_THAT(
        refused,
        ElementsAre("AtmTrafficDescriptorClient.isLike values.egressUbrShare",
                    "AtmTrafficDescriptorClient.isLike values.ingressUbrShare",
                    "AtmTrafficDescriptorClient.setEgressUbrShare share",
                    "AtmTrafficDescriptorClient.setIngressUbrShare share", "DsvmEntryClient.init initial.trafficType",
                    "EthIfNetClient.createVlan params.shaperBurstSize", "EthIfNetClient.createVlan params.vlanId",
                    "EthIfNetClient.deleteVlan vlanId", "EthIfNetClient.getVlanIfNet vlanId",
                    "EthIfNetClient.setSbsTotal sbsTotal", "EthIfNetClient.setShapedBandwidth bandwidth",
                    "EthIfNetClient.setSirTotal sirTotal", "EthLinkClient.setPacketSize size",
                    "FaultServiceClient.setOperState state", "IfNetClient.setInternalMtu mtu", "IfNetClient.setMtu mtu",
                    "IpNodeClient.createAtmIfNet param.ifNetParams.mtu", "IpNodeClient.setMtu mtu",
                    "TransmissionPortClient.setSsmValueRx value", "TransmissionPortClient.setSsmValueTx value",
                    "TransportModeParClient.setCacCommittedBitRate rate",
                    "TransportModeParClient.setDcnCommittedBitRate rate", "TransportModeParClient.setMinSctpPort port",
                    "TransportModeParClient.setMinUdpPort port",
                    "TransportModeParClient.setSharedIpAllocation allocation",
                    "TransportModeParClient.setSignallingCommittedBitRate rate",
                    "VlanIfNetClient.setShaperBurstSize size", "VlanIfNetClient.setVlanId vlanId",
                    "VlanIfNetFabricClient.create params.shaperBurstSize", "VlanIfNetFabricClient.create params.vlanId",
                    "VlanIfNetFabricClient.createWithIndex params.shaperBurstSize",
                    "VlanIfNetFabricClient.createWithIndex params.vlanId"));
}

// The innermost record and field, or element of a type of its own, that a path such as "routes[].netmask" leads to.
struct Place {
    Type const* type;
    Type const* record = nullptr;
    std::string field = {};
};
Place placeOf(Type const& parameter, std::string const& path)
{
    Place place{&parameter};
    std::size_t at = path.find_first_of(".[");
    while (at < path.size()) {
        std::size_t const end = std::min(path.find_first_of(".[", at + 1), path.size());
        if (path[at] == '[') {
            place.type = place.type->element;
            place.field += "[]";
        } else {
            place.field = path.substr(at + 1, end - at - 1);
            place.record = place.type;
            place.type = std::ranges::find(place.type->fields, place.field, &trs::catalogue::Field::name)->type;
        }
        at = end;
    }
    return place;
}

// docs/limits.md has a line for each parameter, field and enumeration that has a limit. Octets of addresses it tells
// once.
TEST(Limits, AreAllOnTheirPage)
{
    std::set<std::string> rows;
    for (trs::catalogue::Operation const* const operation : operationsWithLimits()) {
        std::vector<std::string_view> const names = operation->parameterNames();
        for (trs::catalogue::LimitedPart const& part : trs::catalogue::limitedParts(*operation)) {
            auto const name = std::ranges::find(names, part.path.substr(0, part.path.find_first_of(".[")));
            if (!part.isIn) {
                continue;
            }
            Place const place =
                placeOf(*operation->parameters[static_cast<std::size_t>(name - names.begin())].type, part.path);
            std::string const what =
                place.type->kind == Type::Kind::enumeration ? "`" + std::string(place.type->name) + "` | "
                : place.record != nullptr ? "`" + std::string(place.record->name) + "` | `" + place.field + '`'
                                          : "`" + std::string(operation->className) +
                                                "::" + std::string(operation->name) + "()` | `" + part.path + '`';
            bool const isOctet = part.path.ends_with("[]") && part.limit->text() == "0..255";
            if (!isOctet) {
                rows.insert("| " + what + " | `" + part.limit->text() + "` |");
            }
        }
    }
    std::set<std::string> told;
    std::ifstream page(TRSMAN_SOURCE_DIR "/docs/limits.md");
    std::string line;
    while (std::getline(page, line) && line != "## All of them") {
    }
    while (std::getline(page, line)) {
        if (line.starts_with("| `")) {
            told.insert(line);
        }
    }
    EXPECT_EQ(told, rows);
}

} // namespace
