// trsctl against a unit.
#include "catalogue/Class.h"
#include "tests/tools/Trsctl.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace {

using Trsctl = TrsctlTest;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(Trsctl, SeesWhatItSets)
{
    Unit sim = unit();
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1500\n");
    EXPECT_EQ(output({"set", "IpNode", "mtu", "1400"}), "");
    EXPECT_EQ(output({"get", "IpNode", "getMtu", "--format", "json"}), "{\n  \"mtu\": 1400\n}\n");
    EXPECT_EQ(
        output({"call", "IpNode", "setIpConfig", "site", "text=a b", "10.0.0.1", "number=7", "address2=[255,255,0,0]"}),
        "");
    EXPECT_EQ(output({"--format", "table", "call", "IpNode", "getIpConfig", "name=site"}),
              "NAME      VALUE\naddress   10.0.0.1\naddress2  255.255.0.0\nnumber    7\ntext      a b\n");

    for (std::string const text : {"[a]", "[]", "[a,b] ", "{}", "a=b"}) {
        EXPECT_EQ(output({"call", "IpNode", "setIpConfig", "name=x", "[10,0,0,1]", "10.0.0.2", "7", text}), "");
        EXPECT_EQ(output({"get", "IpNode", "ipConfig", "x"}),
                  "address 10.0.0.1\naddress2 10.0.0.2\nnumber 7\ntext " + text + '\n');
    }
    EXPECT_EQ(run({"set", "IpNode", "mtu", "[1]"}).code, 2);
    EXPECT_EQ(output({"set", "EthIfNet:IfNet/Lmp", "ipAddrSequence", "[]"}), "");
    EXPECT_EQ(output({"get", "EthIfNet:IfNet/Lmp", "ipAddrSequence"}), "addresses []\n");

    std::string const file = directory.file("parameters");
    std::ofstream(file) << R"({"vlanId": 300, "committedInfoRate": 100, "sir": 0, "vlanShapingEnabled": false,
        "ipAddressInfo": {"ipAddress": "10.3.0.7", "address2": "0.0.0.0"}, "shaperBurstSize": 1522,
        "bfdInfo": {"bfdActivation": false, "bfdAdminUp": false, "bfdActivation2": false, "bfdAdminUp2": false,
                    "bfdDestAddress": "0.0.0.0", "bfdDestAddress2": "0.0.0.0", "bfdSourceUdpPort": 0,
                    "bfdTypeUdpPort": 0, "bfdTimer": {"value1": 500, "value2": 500, "value3": 3}},
        "vlanInstanceId": 300, "qosEnabled": false, "cesopsn": false})";
    std::string const vlan = output({"call", "EthIfNet:IfNet/Transport", "createVlan", "@" + file});
    EXPECT_THAT(vlan, StartsWith("vlan VlanIfNet:"));
    std::string const object = vlan.substr(5, vlan.size() - 6);
    EXPECT_EQ(output({"get", object, "vlanId"}), "vlanId 300\n");
    EXPECT_EQ(run({"call", "EthIfNet:IfNet/Transport", "createVlan", "@" + file}).code, 4) << "there is one already";
}

TEST_F(Trsctl, TellsByItsExitCodeWhatCanBeDone)
{
    Unit sim = unit();
    struct {
        Arguments arguments;
        int code;
        std::string error;
    } const cases[] = {
        {{}, 2, "a verb is required; trsctl --help"},
        {{"sing"}, 2, "'sing' is no verb of trsctl"},
        {{"gte"}, 2, "did you mean 'get'?"},
        {{"get", "IpNode", "mtu", "--frmat", "json"}, 2, "no option of trsctl get; did you mean '--format'?"},
        {{"get", "EtIfNet:IfNet/Transport", "mtu"}, 2, "did you mean 'EthIfNet'?"},
        {{"get", "IpNode", "mtuu"}, 2, "did you mean 'mtu'?"},
        {{"set", "IpNode", "mtu", "mut=1400"}, 2, "'mut' is no parameter of setMtu; did you mean 'mtu'?"},
        {{"call", "IpNode", "getIpConfig", "nam=x"}, 2, "'nam' is no parameter of getIpConfig; did you mean 'name'?"},
        {{"wait", "IpNode", "mtu", "--where", "mtuu=1"}, 2, "--where: 'mtuu' is nothing that is told; did you mean"},
        {{"watch", "IpNode", "setMtu", "--where", "x.y=1"}, 2, "there is mtu, result.failed, result.subSystem"},
        {{"call", "EthIfNet:IfNet/Transport", "createVlan", R"({"bfdInfo": {"bfdTimer": {"value1": "x"}}})"},
         2,
         "params.bfdInfo.bfdTimer.value1: 'x' is neither a number"},
        {{"call", "QelLong:PdhUnit-1/PathType", "set", "99"}, 4, "refused by the unit"},
        {{"get", "IpNode"}, 2, "NAME is required"},
        {{"get", "IpNode", "mtu", "--format", "xml"}, 2, "xml"},
        {{"get", "Nonsense:x", "mtu"}, 2, "'Nonsense' is no class"},
        {{"get", "x", "mtu"}, 2, "'x' is no object"},
        {{"get", "IpNode", "colour"}, 2, "'colour' is no operation of IpNodeClient"},
        {{"get", "IpNode", "setMtu", "1"}, 2, "setMtu does not read anything; `trsctl call` calls any operation"},
        {{"set", "IpNode", "resetIpConfig"}, 2, "resetIpConfig does not set anything"},
        {{"set", "IpNode", "mtu"}, 2, "mtu is missing\nResponseInfo<SetClient> setMtu(in long mtu)"},
        {{"set", "IpNode", "mtu", "1", "2"}, 2, "'2' is one argument too many"},
        {{"set", "IpNode", "mtu", "mtu=1", "mtu=2"}, 2, "'mtu=2' is given twice"},
        {{"set", "IpNode", "mtu", "wide"}, 2, "mtu: 'wide' is neither a number nor a constant of IpNodeClient"},
        {{"describe", "IfNet.colour"}, 2, "'colour' is no operation"},
        {{"describe", "0x00000000"}, 2, "'0x00000000' is no class"},
        {{"get", "IfNet:nowhere", "mtu"}, 3, "IfNet:nowhere getMtu at " + endpoint + ": there is no such object"},
        {{"tree", "IfNet:nowhere"}, 3, "there is no such object"},
        {{"call", "IpNode", "getIpConfig", "nothing"},
         4,
         "IpNode:IpNode getIpConfig at " + endpoint + ": refused by the unit"},
        {{"get", "AppObject:IpNode", "mtu"}, 2, "'AppObject' is no class"},
        {{"walk", "IfNet:nowhere"}, 3, "there is no such object"},
        {{"snapshot", "IfNet:nowhere"}, 3, "there is no such object"},
        {{"walk", "Condition:IpNode"}, 8, "the object has no such operation"},
        {{"tree", "EthIfNet:IpNode"}, 8, "the object has no such operation"},
        {{"snapshot", "EthIfNet:IpNode"}, 8, "the object has no such operation"},
        {{"get", "Condition:IpNode", "isActive"}, 8, "no such operation; it was not carried out"},
    };
    for (auto const& [arguments, code, error] : cases) {
        Result const result = run(arguments);
        EXPECT_EQ(result.code, code) << error;
        EXPECT_THAT(result.error, HasSubstr(error));
        EXPECT_EQ(result.output, "");
    }
    sim.does("hang");
    Result const late = run({"--timeout", "100", "call", "NmiRmiAdapterServer", "getPublicIpAddrRmi"});
    EXPECT_EQ(late.code, 5);
    EXPECT_THAT(late.error, HasSubstr("whether it was carried out is unknown"));
    sim.signal(SIGKILL);
    sim.waitForExit();
    EXPECT_EQ(run({"get", "IpNode", "mtu"}).code, 6);
}

TEST_F(Trsctl, WaitsForTheUnit)
{
    ChildProcess child(program("trsctl"), {"--unit", endpoint, "--wait", "60", "get", "IpNode", "mtu"});
    Unit sim = unit();
    EXPECT_EQ(child.waitForExit(), 0);
    EXPECT_EQ(child.readLine(), "mtu 1500");
}

// Text and JSON have the same leaves.
TEST_F(Trsctl, WalksAnObject)
{
    Unit sim = unit();
    std::string const text = output({"walk", "EthIfNet:IfNet/Transport"});
    EXPECT_THAT(text, HasSubstr("\ngetIpAddrSequence.addresses[0].ipAddress 10.1.0.7\n"));
    EXPECT_THAT(text, HasSubstr("\ngetEthernetAddress.address 02:00:00:00:00:01\n"));
    auto const json = nlohmann::ordered_json::parse(output({"--format", "json", "walk", "EthIfNet:IfNet/Transport"}));
    std::string leaves;
    auto const flat = json.flatten();
    for (auto const& [pointer, value] : flat.items()) {
        leaves += pointer + ' ' + (value.is_string() ? value.get<std::string>() : value.dump()) + '\n';
    }
    std::istringstream lines(text);
    std::string expected;
    for (std::string line; std::getline(lines, line);) {
        std::size_t const end = line.find(' ');
        std::string pointer = '/' + line.substr(0, end);
        for (char& character : pointer) {
            character = character == '.' || character == '[' ? '/' : character;
        }
        std::erase(pointer, ']');
        std::string const leaf = line.substr(end + 1);
        expected += pointer + ' ' + (leaf == "[]" || leaf == "none" ? "null" : leaf) + '\n'; // as flatten() has it
    }
    EXPECT_EQ(leaves, expected);
}

TEST_F(Trsctl, ShowsTheTreeOfObjects)
{
    Unit sim = unit();
    std::string const text = output({"tree"});
    EXPECT_THAT(text, StartsWith("IpNode:IpNode\n"));
    EXPECT_THAT(text, HasSubstr("\n  EthIfNet:IfNet/Transport  (getTransportIfNet)\n"));
    EXPECT_THAT(text, HasSubstr("HwmSensor:HwmUnit-1/Sensor  (getSensor)\n"));
    EXPECT_THAT(text, HasSubstr("EthLink:HwmUnit-1/EthLink  (getActiveLink, above)"));
    EXPECT_THAT(text, HasSubstr("\nNmiRmiAdapter:NmiRmiAdapterServer\n"));
    // What stands behind keys, and each object by its own class, whichever it was met as.
    EXPECT_THAT(text, HasSubstr("\n  IpRoutingTable:RoutingTable/0  (getDedicatedIpRoutingTable 0)\n"));
    EXPECT_THAT(text, HasSubstr("  IpRouteEntry:RoutingTable/0/Entry/1  (getIpRouteEntries)\n"));
    EXPECT_THAT(text, HasSubstr("  HwmModule:HwmUnit-1/Module/1  (getModule 1)\n"));
    EXPECT_THAT(text, HasSubstr("VlanIfNet:IfNet/Transport/Vlan/100  (getVlanIfNet 100, above)\n"));
    EXPECT_THAT(text, HasSubstr("EthIfNet:IfNet/Transport  (getConsumerIf, above)\n"));
    EXPECT_THAT(text, testing::Not(HasSubstr("ApplicationObject:IfNet")));
    EXPECT_THAT(text, HasSubstr("\nApplicationObject:AppObject-1\n  LocationId:AppObject-1/LocationId"));
    EXPECT_EQ(output({"tree", "--depth", "0"}), "IpNode:IpNode\nNmiRmiAdapter:NmiRmiAdapterServer\n"
                                                "Simulator:Simulator\nApplicationObject:AppObject-1\n");
    EXPECT_EQ(output({"tree", "Simulator"}), "Simulator:Simulator\n");
    EXPECT_THAT(output({"tree", "--dot"}),
                HasSubstr("  \"IpNode:IpNode\" -> \"EthIfNet:IfNet/Lmp\" [label=\"getLMPIfNet\"];\n"));
    auto const json = nlohmann::json::parse(output({"tree", "--format", "json", "--depth", "1"}));
    ASSERT_EQ(json.size(), 4U);
    bool const hasLmp = std::any_of(json[0]["children"].begin(), json[0]["children"].end(),
                                    [](auto const& child) { return child["operation"] == "getLMPIfNet"; });
    EXPECT_TRUE(hasLmp);

    // What is near enough by one way is shown, however long another one is.
    EXPECT_THAT(output({"tree", "--depth", "5"}),
                HasSubstr("AdminState:HwmUnit-1/EthPort/AdminState  (getAdminState)"));
    sim.does("fault drop operation=NtpAccess.getTimeZone");
    Result const silent = run({"--timeout", "1000", "tree"});
    EXPECT_EQ(silent.code, 5);
    EXPECT_THAT(silent.error, StartsWith("NtpAccess:Access/Ntp getTimeZone at "));
    EXPECT_THAT(silent.output, HasSubstr("\n  NtpAccess:Access/Ntp  (getNtpAccess)\n")) << "what was found is shown";
}

TEST_F(Trsctl, DescribesWithoutAUnit)
{
    std::string const classes = output({"list"});
    EXPECT_EQ(static_cast<std::size_t>(std::count(classes.begin(), classes.end(), '\n')),
              trs::catalogue::classes().size());
    EXPECT_THAT(output({"list", "EthIfNet"}), HasSubstr("ResponseInfo<GetClient> getMtu(out long mtu)"));
    EXPECT_THAT(output({"describe", "0xb86aeff7"}), StartsWith("class IfNetClient\n"));
    std::string const described = output({"describe", "VlanIfNet.getIpAddrSequence"});
    EXPECT_THAT(described, HasSubstr("class IfNetClient\nclassId 0xb86aeff7\nindex 12\n"));
    EXPECT_THAT(described, HasSubstr("types.IfNetClient::IpAddrInfo.address4 TipprmiArray<short, 4>\n"));

    EXPECT_THAT(output({"describe", "EthIfNet.createVlan"}),
                HasSubstr("limits.params.shaperBurstSize 1522..2000000\n"));
    auto const limitsOf = [this](std::string const& operation) {
        return nlohmann::json::parse(output({"--format", "json", "describe", operation}))["limits"].dump();
    };
    EXPECT_EQ(limitsOf("EthIfNet.setSirTotal"), R"({"sirTotal":{"least":100,"most":1000000,"step":100}})");
    EXPECT_EQ(limitsOf("FaultService.setOperState"), R"({"state":{"oneOf":{"DISABLED":12,"ENABLED":11}}})");
    EXPECT_EQ(limitsOf("IpRoutingTable.createIpRoute"),
              R"({"route.destination[]":{"least":0,"most":255},"route.gateway[]":{"least":0,"most":255},)"
              R"("route.netmask":{"netmask":true},"route.netmask[]":{"least":0,"most":255}})");
    EXPECT_EQ(limitsOf("Aal5Profile.setNmaLabel"), R"({"label":{"characters":{"least":0,"most":20}}})");
    EXPECT_EQ(limitsOf("IfNet.setDiscardPublic"), "null");
    EXPECT_EQ(output({"describe", "IfNet.setMtu", "--template", "mtu"}), "68\n");
    EXPECT_EQ(output({"describe", "EthIfNet.getVlanIfNet", "--template", "vlan"}), "null\n") << "an out-argument";
}

TEST_F(Trsctl, PointsOutValuesOutsideTheirLimits)
{
    Unit sim = unit();
    EXPECT_EQ(run({"set", "IpNode", "mtu", "68"}).error, "");
    EXPECT_THAT(run({"set", "IpNode", "mtu", "67"}).error,
                HasSubstr("refused by the unit; mtu: 67 is not 68..65535; nothing is known to have changed"));
    Result const silent = run({"call", "FaultService:IfNet/Transport/FaultService", "setOperState", "77"});
    EXPECT_EQ(silent.error, "note: state: 77 is not one of ENABLED (11), DISABLED (12)\n");
    EXPECT_EQ(silent.code, 0) << "it has no status";
}

} // namespace
