// A unit as a document wants it: plan, apply, confirm, rollback.
#include "catalogue/Call.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "catalogue/OperationKind.h"
#include "rmi/TreflectHandlerState.h"
#include "tests/tools/Trsctl.h"
#include "tools/trsctl/UnitState.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

namespace {

using testing::HasSubstr;
using testing::Not;
using Wanted = trs::catalogue::Value;

constexpr char const* vlan300 =
    R"({"vlanId": 300, "committedInfoRate": 100, "sir": 0, "vlanShapingEnabled": false,
        "ipAddressInfo": {"ipAddress": "10.3.0.7", "address2": "0.0.0.0"}, "shaperBurstSize": 1522,
        "bfdInfo": {"bfdActivation": false, "bfdAdminUp": false, "bfdActivation2": false, "bfdAdminUp2": false,
                    "bfdDestAddress": "0.0.0.0", "bfdDestAddress2": "0.0.0.0", "bfdSourceUdpPort": 0,
                    "bfdTypeUdpPort": 0, "bfdTimer": {"value1": 500, "value2": 500, "value3": 3}},
        "vlanInstanceId": 300, "qosEnabled": false, "cesopsn": false})";

class TrsctlApply : public TrsctlTest {
protected:
    TrsctlApply() { ::setenv("XDG_STATE_HOME", directory.file("state").c_str(), 1); }
    ~TrsctlApply() override
    {
        ::unsetenv("XDG_STATE_HOME");
        std::filesystem::remove_all(directory.file("state"));
    }

    std::string write(std::string const& text)
    {
        std::ofstream(directory.file("wanted.json")) << text;
        return directory.file("wanted.json");
    }
    // What a document of one object wants.
    Result apply(std::string const& object, Arguments more = {})
    {
        more.insert(more.begin(), {"apply", write(R"({"objects": {)" + object + "}}")});
        return run(more);
    }
    std::string snapshot()
    {
        std::string const file = directory.file("before.json");
        EXPECT_EQ(output({"snapshot", "-o", file}), "");
        return file;
    }
    void expectAsIn(std::string const& file)
    {
        Result const result = run({"diff", file, endpoint});
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.code, 0) << result.error;
    }
    void waitForMtu(std::string const& mtu)
    {
        EXPECT_EQ(output({"wait", "IpNode", "mtu", "--where", "mtu=" + mtu, "--for", "15"}), "mtu " + mtu + '\n');
    }
};

TEST_F(TrsctlApply, BringsBackWhatWasChangedSinceASnapshot)
{
    Unit sim = unit({"--clock", "stepped", "--address", "10.0.0.7"});
    std::string const before = snapshot();
    EXPECT_EQ(run({"plan", before}).code, 0);
    std::ofstream(directory.file("changes")) << "set IpNode mtu 1400\n"
                                                "set EthIfNet:IfNet/Transport mtu 1300\n"
                                                "set AtmTrafficDescriptor:Atm/TrafficDescriptor/1 userLabel other\n"
                                                "set HwmLed:HwmUnit-1/Led ledName other\n"
                                                "call IpRoutingTable:RoutingTable/0 createIpRoute "
                                                R"('{"destination": "10.9.0.0", "netmask": "255.255.0.0", )"
                                                R"("gateway": "10.1.0.9"}')"
                                                "\n"
                                                "call IpRoutingTable:RoutingTable/0 deleteIpRoute "
                                                R"('{"destination": "0.0.0.0", "netmask": "0.0.0.0", )"
                                                R"("gateway": "10.1.0.254"}')"
                                                "\n"
                                                "call EthIfNet:IfNet/Transport deleteVlan 200\n"
                                                "call EthIfNet:IfNet/Transport createVlan '"
                                             << std::regex_replace(vlan300, std::regex("\n *"), " ")
                                             << "'\n"
                                                "call AdminState:IfNet/Transport/AdminState removePolicy "
                                                "AdminStatePolicy:IfNet/Transport/Policy\n"
                                                "call AdminState:IfNet/Lmp/AdminState insertPolicy "
                                                "AdminStatePolicy:IfNet/Transport/Policy\n";
    EXPECT_NE(output({"batch", directory.file("changes")}), "");

    Result const planned = run({"plan", before});
    EXPECT_EQ(planned.code, 1);
    EXPECT_THAT(planned.output, HasSubstr("~ IpNode:IpNode setMtu mtu=1500  (mtu was 1400)\n"));
    EXPECT_THAT(planned.output, HasSubstr("\n+ EthIfNet:IfNet/Transport createVlan 'params={\"vlanId\":200,"));
    EXPECT_THAT(planned.output, HasSubstr("\n- EthIfNet:IfNet/Transport deleteVlan vlanId=300\n"));
    EXPECT_EQ(output({"apply", "--dry-run", before}), planned.output);
    EXPECT_EQ(run({"plan", before}).output, planned.output) << "neither does anything";

    std::string const after = directory.file("after.json");
    EXPECT_EQ(output({"snapshot", "-o", after}), "");
    EXPECT_NE(output({"apply", before}), "");
    expectAsIn(before);
    EXPECT_NE(output({"rollback"}), "");
    EXPECT_EQ(run({"diff", after, endpoint}).code, 0) << "what was, without the counters of what is made anew";
    EXPECT_EQ(run({"rollback"}).code, 2) << "once";
}

// Every kind of object that can be made and every setting that there is, changed at once.
TEST_F(TrsctlApply, SetsWhateverCanBeSet)
{
    // It says a lot, which nobody reads here.
    ChildProcess sim("/bin/sh", {"-c", "exec " + program("trssim") + " --listen " + endpoint +
                                           " --clock stepped --address 10.0.0.7 >" + directory.file("said")});
    EXPECT_EQ(run({"--wait", "20", "get", "IpNode", "mtu"}).code, 0);
    std::string const before = snapshot();
    std::string text;
    std::ifstream file(before);
    text.assign(std::istreambuf_iterator<char>(file), {});
    Wanted document;
    ASSERT_EQ(trs::catalogue::parseJson(text, document), "");
    std::set<std::string> kinds;
    trs::Broker::instance().addPeer(endpoint);
    for (auto const& [id, object] : trs::ctl::readTold(document).objects) {
        for (trs::ctl::UnitState::Reading const& reading : object.readings) {
            trs::catalogue::Operation const* const writer = writerOf(*object.type, *reading.operation);
            if (writer == nullptr || !trs::catalogue::typesOf(*reading.operation, true).empty()) {
                continue;
            }
            std::vector<Wanted> in;
            for (auto const& [name, value] : reading.told.items()) {
                Wanted& changed = in.emplace_back(value);
                trs::catalogue::resolveConstants(*object.type, *writer, *writer->parameters[in.size() - 1].type,
                                                 changed);
                changed = changed.is_boolean()          ? Wanted(!changed)
                          : changed.is_number_integer() ? Wanted(changed.get<long>() + 100)
                          : changed.is_string() &&
                                  writer->parameters[in.size() - 1].type->kind == trs::catalogue::Type::Kind::text
                              ? Wanted(value.get<std::string>() + "x")
                              : changed;
            }
            trs::catalogue::bringWithin(*writer, in);
            TreflectHandlerState const running;
            trs::catalogue::call(TipprmiObjectClient(TipprmiOID(id)), *writer, in);
            kinds.insert(std::string(writer->className) + '.' + std::string(writer->name));
        }
    }
    EXPECT_GT(kinds.size(), 90U);
    for (Arguments const& made : std::initializer_list<Arguments>{
             {"HwmUnit:HwmUnit-1", "createModule", "5", "five"},
             {"HwmUnit:HwmUnit-1", "deleteModule", "1"},
             {"IpNode", "deleteAtmIfNet", "AtmIfNet:IfNet/Atm/1"},
             {"IpNode", "deleteIp3IfNet", "Ip3IfNet:IfNet/Ppp/1"},
             {"EthIfNet:IfNet/Lmp", "createVlan", vlan300},
             {"EthIfNet:IfNet/Transport", "deleteVlan", "100"},
             {"IpNode", "setIpConfig", "TRS", "10.0.0.9", "10.0.0.2", "7", "text=site"},
             {"NtpAccess:Access/Ntp", "createNtpServer", "10.0.0.3", "5"},
             {"RmAccess:Access/RuleManager", "deleteRuleset", "input"},
             {"Condition:IfNet/Lmp/Condition/DownEgress", "suppress"},
             {"ApplicationObject:AppObject-1", "destroyPerformanceSvc"},
             {"ApplicationObject:IfNet/Lmp", "isSupportedBy", "ApplicationObject:AppObject-1"},
             {"TransmissionIf:PdhUnit-1/If/1", "reserve", "ApplicationObject:AppObject-1"}}) {
        Arguments words = made;
        words.insert(words.begin(), "call");
        EXPECT_EQ(run(words).code, 0) << made[1];
    }
    Result const result = run({"apply", before});
    EXPECT_EQ(result.code, 0) << result.error;
    expectAsIn(before);
}

TEST_F(TrsctlApply, TakesBackAllWhenAStepFails)
{
    Unit sim = unit({"--clock", "stepped"});
    std::string const before = snapshot();
    sim.does("fault refuse operation=IpNode.setMtu");
    Result const refused =
        apply(R"("EthIfNet:IfNet/Transport": {"mtu": 1300, "vlanTags": [7]}, "VlanIfNet:IfNet/Transport/Vlan/300":)"
              R"( {"vlanId": 300}, "IpNode": {"mtu": 1400})");
    EXPECT_EQ(refused.code, 4);
    EXPECT_THAT(refused.error, HasSubstr("IpNode:IpNode setMtu at "));
    EXPECT_THAT(refused.error, HasSubstr("what was done is taken back"));
    expectAsIn(before);

    sim.does("clear");
    sim.does("fault close operation=IpNode.setMtu count=1");
    EXPECT_EQ(apply(R"("EthIfNet:IfNet/Lmp": {"mtu": 1300}, "IpNode": {"mtu": 1400})").code, 6);
    expectAsIn(before);
}

TEST_F(TrsctlApply, TakesBackWhatIsInterrupted)
{
    Unit sim = unit({"--clock", "stepped"});
    std::string const before = snapshot();
    sim.does("fault drop operation=IpNode.setMtu count=1");
    std::string const wanted = write(R"({"objects": {"EthIfNet:IfNet/Lmp": {"mtu": 1300}, "IpNode": {"mtu": 1400}}})");
    ChildProcess applying(program("trsctl"), {"--unit", endpoint, "--timeout", "60000", "apply", wanted});
    applying.readUntil("EthIfNet:IfNet/Lmp setMtu mtu=1300");
    applying.signal(SIGINT);
    EXPECT_EQ(applying.waitForExit(), 6);
    expectAsIn(before);
}

TEST_F(TrsctlApply, AChangeThatFailedLeavesTheOneBeforeToBeTakenBack)
{
    Unit sim = unit({"--clock", "stepped"});
    EXPECT_EQ(apply(R"("IpNode": {"mtu": 1400})").code, 0);
    Result const refused = apply(R"("IpNode": {"mtu": 14})");
    EXPECT_EQ(refused.code, 4);
    EXPECT_THAT(refused.error, Not(HasSubstr("taken back"))) << "nothing was done";
    EXPECT_EQ(apply(R"("EthIfNet:IfNet/Lmp": {"mtu": 1300}, "IpNode": {"mtu": 14})", {"--confirm", "5"}).code, 4);
    EXPECT_EQ(run({"confirm"}).code, 2);
    sim.does("fault close operation=IpNode.getMtu count=1");
    EXPECT_EQ(run({"rollback"}).code, 6);
    EXPECT_EQ(output({"rollback"}), "~ IpNode:IpNode setMtu mtu=1500  (mtu was 1400)\n");
}

TEST_F(TrsctlApply, TakesWhatIsWrittenByHand)
{
    Unit sim = unit({"--clock", "stepped"});
    EXPECT_THAT(apply(R"("ipnode": {}, "IpNode:IpNode": {})").error, HasSubstr("IpNode:IpNode is there twice"));
    Result const done = apply(R"("ipnode": {"MTU": 1400, "transportmode": "transport_mode_iubip"},
                 "VlanIfNet:IfNet/Transport/Vlan/300": {"vlanId": 300, "ipAddressInfo": {"ipAddress": "10.3.0.7"}},
                 "VlanIfNet:IfNet/Transport/Vlan/200": null,
                 "HwmModule:HwmUnit-1/Module/7": {})");
    EXPECT_EQ(done.code, 0) << done.error;
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1400\n");
    EXPECT_EQ(output({"get", "IpNode", "transportMode"}), "mode TRANSPORT_MODE_IUBIP\n");
    EXPECT_EQ(output({"get", "VlanIfNet:IfNet/Transport/Vlan/300", "ipAddressInfo"}),
              "info.ipAddress 10.3.0.7\ninfo.address2 0.0.0.0\n");
    EXPECT_EQ(run({"get", "VlanIfNet:IfNet/Transport/Vlan/200", "mtu"}).code, 3);
    EXPECT_EQ(output({"get", "HwmUnit:HwmUnit-1", "module", "7"}), "module HwmModule:HwmUnit-1/Module/7\n");
    EXPECT_EQ(output({"get", "VlanIfNet:IfNet/Transport/Vlan/100", "mtu"}), "mtu 1500\n") << "not named, not removed";

    struct {
        char const* object;
        char const* wrong;
    } const cases[] = {
        {R"("IpNode": {"mtuu": 1})", "IpNode 'mtuu' reads nothing of IpNode; did you mean 'mtu'?"},
        {R"("IpNode": {"mtu": "wide"})", "IpNode mtu: mtu: 'wide' is neither a number"},
        {R"("IpNode": {"mtu": {"mut": 1400}})", "mtu: "},
        {R"("EthIfNet:IfNet/Lmp": {"ipAddrSequence": [{"ipAddress": "10.0.0.256"}]})", "addresses[0]"},
        {R"("Nonsense:x": {})", "'Nonsense' is no class"},
        {R"("nowhere": {})", "'nowhere' is no object"},
        {R"("IpNode": 7)", "IpNode is no object of readings"},
    };
    for (auto const& [object, wrong] : cases) {
        Result const result = apply(object);
        EXPECT_EQ(result.code, 2) << object;
        EXPECT_THAT(result.error, HasSubstr(wrong));
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(run({"apply", write("[]")}).code, 2);
    EXPECT_EQ(run({"apply", directory.file("nowhere")}).code, 2);
}

TEST_F(TrsctlApply, TakesPerformanceServicesAwayAndBringsThemBack)
{
    Unit sim = unit({"--clock", "stepped"});
    std::string const before = snapshot();
    Result const removed = apply(R"("PerformanceService:AppObject-1/PerformanceService": null)");
    EXPECT_EQ(removed.output, "- ApplicationObject:AppObject-1 destroyPerformanceSvc\n");
    EXPECT_EQ(output({"get", "ApplicationObject:AppObject-1", "performanceSvc"}), "result none\n");
    EXPECT_THAT(output({"apply", before}), HasSubstr("+ ApplicationObject:AppObject-1 createPerformanceSvc\n"));
    expectAsIn(before);
}

TEST_F(TrsctlApply, ReportsWhatNothingSets)
{
    Unit sim = unit({"--clock", "stepped"});
    Result const result = apply(R"("IpNode": {"mtu": 1400, "numberedLinks": true})", {"--facts"});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(result.output, HasSubstr("? IpNode:IpNode getnumberedLinks.result: wanted true, is false\n"));
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1400\n");
    auto const json = Wanted::parse(output({"--format", "json", "apply", directory.file("wanted.json")}));
    EXPECT_EQ(json, Wanted::parse(R"({"change": "none", "place": "IpNode:IpNode getnumberedLinks.result",
                                     "wanted": true, "now": false})"));
}

TEST_F(TrsctlApply, IsTakenBackUnlessItIsConfirmed)
{
    Unit sim = unit({"--clock", "stepped"});
    Result const applied = apply(R"("IpNode": {"mtu": 1400})", {"--confirm", "0.02"});
    EXPECT_EQ(applied.code, 0);
    EXPECT_THAT(applied.error, HasSubstr("unless `trsctl confirm` comes"));
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1400\n");
    waitForMtu("1500");
    EXPECT_EQ(run({"confirm"}).code, 2) << "too late";

    EXPECT_EQ(apply(R"("IpNode": {"mtu": 1300})", {"--confirm", "10"}).code, 0);
    Result const second = apply(R"("IpNode": {"mtu": 1200})");
    EXPECT_EQ(second.code, 2);
    EXPECT_THAT(second.error, HasSubstr("a change waits to be confirmed"));
    EXPECT_EQ(output({"confirm"}), "");
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1300\n");
    EXPECT_NE(output({"rollback"}), "");
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1500\n");

    EXPECT_EQ(apply(R"("IpNode": {"mtu": 1300})", {"--confirm", "10"}).code, 0);
    EXPECT_NE(output({"rollback"}), "") << "before its time";
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1500\n");
    EXPECT_EQ(run({"confirm"}).code, 2);
}

// The session that applied it is lost, with all its processes, and so is the unit for a while.
TEST_F(TrsctlApply, IsTakenBackThoughTheSessionAndTheUnitWereLost)
{
    std::string const state = directory.file("unit.state");
    {
        Unit sim = unit({"--clock", "stepped", "--state", state});
        std::string const wanted = write(R"({"objects": {"IpNode": {"mtu": 1400}}})");
        ChildProcess session("/bin/sh", {"-c", "setsid -w /bin/sh -c '" + program("trsctl") + " --unit " + endpoint +
                                                   " apply " + wanted + " --confirm 0.03; kill -KILL 0'"});
        session.waitForExit();
        EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1400\n");
        sim.signal(SIGKILL);
        sim.waitForExit();
    }
    Unit sim = unit({"--clock", "stepped", "--state", state});
    waitForMtu("1500");
}

} // namespace
