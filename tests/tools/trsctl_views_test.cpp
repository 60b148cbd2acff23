// Alarms, patterns of objects, drawings, selections, and many units at once.
#include "tests/tools/Trsctl.h"
#include "tools/trsctl/Selection.h"
#include "tools/trsctl/Svg.h"

#include <filesystem>
#include <fstream>

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;
using ViewValue = trs::catalogue::Value;

class TrsctlViews : public TrsctlTest {
protected:
    // An XML parser of its own accepts it.
    static void expectWellFormed(std::string const& file)
    {
        ChildProcess lint("/usr/bin/xmllint", {"--noout", "--nonet", file});
        int const code = lint.waitForExit();
        EXPECT_EQ(code, 0) << joined(lint.readRest(ChildProcess::Stream::error));
    }
};

TEST_F(TrsctlViews, AlarmsAreFollowedAsTheyComeAndGo)
{
    Unit sim = unit({"--clock", "stepped"});
    ChildProcess alarms(program("trsctl"), {"--unit", endpoint, "alarms", "--watch"});
    alarms.readUntil("watching", ChildProcess::Stream::error);
    EXPECT_THAT(alarms.readLine(), testing::Optional(StartsWith("OBJECT")));
    sim.does("raise HwmUnit-1/EthLink/Condition/LOC");
    std::string raised;
    for (int i = 0; i < 7; ++i) {
        raised += alarms.readLine().value_or("") + '\n';
    }
    EXPECT_THAT(raised, HasSubstr(" active HwmUnit-1/EthLink LOC severity=3\n"));
    EXPECT_THAT(raised, HasSubstr(" active IfNet/Transport/Vlan/200 DownEgress ")) << "with all its effects";
    run({"call", "Condition:HwmUnit-1/EthLink/Condition/LOC", "suppress"});
    EXPECT_THAT(alarms.readUntil("LOC"), HasSubstr(" suppressed "));
    run({"call", "Condition:HwmUnit-1/EthLink/Condition/LOC", "cancel"});
    EXPECT_THAT(alarms.readUntil("LOC"), HasSubstr(" ended "));
    alarms.signal(SIGINT);
    EXPECT_EQ(alarms.waitForExit(), 0);
}

// No operation leads to the conditions of such an object, but its fault service knows that there is one.
TEST_F(TrsctlViews, AlarmsTellOfConditionsWithoutAName)
{
    Unit sim = unit({"--clock", "stepped"});
    EXPECT_THAT(output({"alarms"}), testing::Not(HasSubstr("AppObject-1")));
    EXPECT_THAT(sim.does("raise los"), HasSubstr("raised"));
    EXPECT_TRUE(sim.writeLine("raise HwmUnit-1/EthLink/Condition/LOC"));
    sim.readUntil("LOC");
    std::string const alarms = output({"alarms"});
    EXPECT_THAT(alarms, ContainsRegex("\nAppObject-1 +\\(not told\\) +unknown +unknown +false\n"));
    EXPECT_THAT(alarms, ContainsRegex("\nHwmUnit-1/EthLink +LOC +3 "));
    EXPECT_THAT(alarms, testing::Not(ContainsRegex("EthLink +\\(not told\\)")));
}

TEST_F(TrsctlViews, APatternWatchesObjectsThatComeAndGo)
{
    Unit sim = unit({"--clock", "stepped"});
    ChildProcess watch(program("trsctl"), {"--unit", endpoint, "watch", "VlanIfNet:IfNet/*", "setMtu"});
    EXPECT_THAT(watch.readLine(ChildProcess::Stream::error), testing::Optional(HasSubstr("2 objects")));
    EXPECT_EQ(run({"set", "VlanIfNet:IfNet/Transport/Vlan/100", "mtu", "1400"}).code, 0);
    EXPECT_THAT(watch.readUntil("setMtu"), HasSubstr("VlanIfNet:IfNet/Transport/Vlan/100 setMtu"));
    EXPECT_EQ(run({"call", "EthIfNet:IfNet/Transport", "createVlan", "params.vlanId=300"}).code, 0);
    watch.readUntil("VlanIfNet:IfNet/Transport/Vlan/300 appeared");
    EXPECT_EQ(run({"set", "VlanIfNet:IfNet/Transport/Vlan/300", "mtu", "1300"}).code, 0);
    watch.readUntil("VlanIfNet:IfNet/Transport/Vlan/300 setMtu");
    EXPECT_EQ(run({"call", "EthIfNet:IfNet/Transport", "deleteVlan", "300"}).code, 0);
    watch.readUntil("VlanIfNet:IfNet/Transport/Vlan/300 gone");
    watch.signal(SIGINT);
    EXPECT_EQ(watch.waitForExit(), 0);
}

// 40 units, more than are asked at once.
TEST_F(TrsctlViews, ManyUnitsAreAskedAtOnce)
{
    ChildProcess fleet("/bin/sh", {"-c", "exec " + program("trssim") + " --units 40 --listen " + endpoint + " >" +
                                             directory.file("said")});
    std::string const home = directory.file("home");
    std::filesystem::create_directories(home + "/trsman");
    {
        std::ofstream units(home + "/trsman/units");
        for (int i = 1; i <= 40; ++i) {
            units << "unit" << i << ' ' << endpoint << '-' << i << " half=" << (i <= 20 ? "first" : "second") << '\n';
        }
        units << "gone unix:" << path << ".gone half=second\n";
    }
    ::setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    EXPECT_EQ(shell("trsctl --selector half=first --wait 20 set IpNode mtu 1400").code, 0);
    Result const first = shell("trsctl --selector half=first get IpNode mtu");
    EXPECT_EQ(std::ranges::count(first.output, '\n'), 20);
    EXPECT_THAT(first.output, HasSubstr("unit20: mtu 1400\n"));
    Result const second = shell("trsctl --selector half=second --unit unit1 get IpNode mtu --format json");
    EXPECT_EQ(second.code, 6);
    EXPECT_EQ(std::ranges::count(second.output, '\n'), 22);
    EXPECT_THAT(second.output, HasSubstr(R"({"unit":"unit40","exitCode":0,"output":{"mtu":1500}})"));
    ViewValue const failure = ViewValue::parse(second.error);
    EXPECT_EQ(failure["unit"], "gone");
    EXPECT_EQ(failure["kind"], "notConnected");
    EXPECT_EQ(failure["carriedOut"], "no");
    EXPECT_THAT(shell("trsctl --unit gone --unit unit1 get IpNode mtu").error, StartsWith("gone: exit code 6: IpNode"));
    Result const planned =
        shell("echo '{\"objects\": {\"IpNode\": {\"mtu\": 1300}}}' | trsctl --unit unit1 --unit unit2 "
              "--format json plan -");
    EXPECT_THAT(planned.output, HasSubstr(R"({"unit":"unit2","exitCode":1,"output":{"change":"set",)"));
    ::unsetenv("XDG_CONFIG_HOME");
    std::filesystem::remove_all(home);
}

TEST_F(TrsctlViews, TrafficIsFilteredAndDrawn)
{
    Unit sim = unit({"--clock", "stepped"});
    std::string const file = directory.file("calls.pcapng");
    std::string const relayed = "unix:" + directory.file("relayed");
    ChildProcess capture(program("trsctl"), {"--unit", endpoint, "capture", "--listen", relayed, "-w", file});
    capture.readUntil("relaying", ChildProcess::Stream::error);
    shell("trsctl --unit " + relayed + " set IpNode mtu 1400; trsctl --unit " + relayed +
          " set IpNode mtu 14; trsctl " + "--unit " + relayed + " get EthIfNet:IfNet/Lmp mtu");
    capture.signal(SIGTERM);
    capture.waitForExit();
    auto const count = [&](Arguments filter) {
        filter.insert(filter.begin(), {"decode", file, "--format", "json"});
        std::string const lines = output(filter);
        return std::ranges::count(lines, '\n');
    };
    EXPECT_EQ(count({"--object", "IpNode"}), 4);
    EXPECT_EQ(count({"--operation", "IfNetClient.*"}), 2);
    EXPECT_EQ(count({"--status", "refused"}), 1);
    EXPECT_EQ(count({"--longer-than", "60000"}), 0);
    EXPECT_EQ(ViewValue::parse(output({"stats", file, "--format", "json", "--object", "IfNet/*"})).size(), 1U);

    std::string const drawing = directory.file("calls.svg");
    EXPECT_EQ(run({"decode", file, "--svg", drawing}).code, 0);
    expectWellFormed(drawing);
    std::ifstream stream(drawing);
    std::string const text(std::istreambuf_iterator<char>(stream), {});
    EXPECT_THAT(text, HasSubstr("IpNodeClient.setMtu"));
    EXPECT_THAT(text, HasSubstr("class=\"bad\"")) << "what was refused";
    EXPECT_THAT(text, HasSubstr("prefers-color-scheme: dark"));
}

TEST_F(TrsctlViews, DrawingsStandAnyText)
{
    std::string const file = directory.file("drawing.svg");
    std::string const text = "<a href=\"x\">&'\x01\xff\xc3\xbc]]>";
    std::ofstream(file) << trs::ctl::sequenceSvg(text, {{text, "unit", text, text, true}});
    expectWellFormed(file);
    std::ofstream(file) << trs::ctl::plotSvg(text, {{text, {}}, {"one", {5}}, {"zeros", {0, 0}}, {"some", {1, 3e9}}},
                                             1);
    expectWellFormed(file);
    std::ofstream(file) << trs::ctl::sequenceSvg("nothing", {});
    expectWellFormed(file);
}

TEST(Selections, AreThoseOfTheirPaths)
{
    ViewValue const value = ViewValue::parse(R"({"a": [{"b": 1, "c": {"b": 2}}, {"b": 3}], "x y": {"'": 4}})");
    struct {
        char const* path;
        char const* parts; // null: no path
        bool isSingular = true;
    } const cases[] = {
        {"$", R"([{"a": [{"b": 1, "c": {"b": 2}}, {"b": 3}], "x y": {"'": 4}}])"},
        {"a[0].b", "[1]"},
        {"$.a[-1].b", "[3]"},
        {"$['x y']['\\'']", "[4]"},
        {"$[\"x y\"]", R"([{"'": 4}])"},
        {"$.a[*].b", "[1, 3]", false},
        {"$..b", "[1, 2, 3]", false},
        {"$.a[0].*", R"([1, {"b": 2}])", false},
        {"a[7]", "[]"},
        {"nothing.b", "[]"},
        {"", nullptr},
        {"a[", nullptr},
        {"a[b]", nullptr},
        {"a['b", nullptr},
        {"a..", nullptr},
        {"$a", nullptr},
    };
    for (auto const& [path, parts, isSingular] : cases) {
        trs::ctl::Selection selection;
        EXPECT_EQ(trs::ctl::Selection::parse(path, selection).empty(), parts != nullptr) << path;
        if (parts != nullptr) {
            EXPECT_EQ(ViewValue(selection.of(value)), ViewValue::parse(parts)) << path;
            EXPECT_EQ(selection.isSingular(), isSingular) << path;
        }
    }
}

} // namespace
