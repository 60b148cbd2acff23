// What trsctl tells programs, above all of failures, and how it takes names.
#include "tests/tools/Trsctl.h"

#include <chrono>
#include <nlohmann/json.hpp>

namespace {

using testing::HasSubstr;

class TrsctlFailures : public TrsctlTest {
protected:
    nlohmann::json parsed(Arguments arguments)
    {
        arguments.insert(arguments.begin(), {"--format", "json"});
        return nlohmann::json::parse(output(arguments), nullptr, false);
    }
};

TEST_F(TrsctlFailures, AreJsonToPrograms)
{
    Unit sim = unit();
    struct {
        Arguments arguments;
        char const* kind;
        char const* carriedOut;
        int code;
        char const* error;
    } const cases[] = {
        {{"get", "IpNode", "colour"}, "usage", "no", 2, "'colour' is no operation"},
        {{"gte"}, "usage", "no", 2, "did you mean 'get'?"},
        {{"get", "IpNode", "mtu", "--frmat", "x"}, "usage", "no", 2, "'--frmat' is no option"},
        {{"get", "--timeout", "soon", "IpNode", "mtu"}, "usage", "no", 2, "soon"},
        {{"get", "IfNet:nowhere", "mtu"}, "noSuchObject", "no", 3, "there is no such object"},
        {{"set", "IpNode", "mtu", "5"}, "refused", "unknown", 4, "mtu: 5 is not 68..65535"},
        {{"get", "Condition:IpNode", "isActive"}, "noSuchOperation", "no", 8, "no such operation"},
        {{"get", "A\xc3\xb6\x1b[2J:x", "mtu"}, "usage", "no", 2, "'A\xc3\xb6\x1b[2J' is no class"},
    };
    for (auto const& [arguments, kind, carriedOut, code, error] : cases) {
        Arguments words = arguments;
        words.insert(words.end(), {"--format", "json"});
        Result const result = run(words);
        nlohmann::json const told = nlohmann::json::parse(result.error, nullptr, false);
        ASSERT_TRUE(told.is_object()) << result.error;
        EXPECT_EQ(told["kind"], kind) << error;
        EXPECT_EQ(told["carriedOut"], carriedOut) << error;
        EXPECT_EQ(told["exitCode"], code) << error;
        EXPECT_EQ(result.code, code) << error;
        EXPECT_THAT(told["error"].get<std::string>(), HasSubstr(error));
        EXPECT_EQ(result.output, "");
    }
    for (char const* const unit : {"unix:/nowhere/at/all", "tcp:no.such.host.invalid:7"}) {
        Result const result = shell("trsctl --format json get IpNode mtu --unit " + std::string(unit));
        EXPECT_EQ(result.code, 6) << result.error;
        EXPECT_EQ(nlohmann::json::parse(result.error)["kind"], "notConnected");
    }
    sim.does("fault drop operation=IpNode.getMtu");
    Result const late = run({"--format", "json", "--timeout", "100", "get", "IpNode", "mtu"});
    EXPECT_EQ(nlohmann::json::parse(late.error)["kind"], "deadline");
    EXPECT_EQ(nlohmann::json::parse(late.error)["carriedOut"], "unknown");

    Result const lines = shell("printf 'get IpNode colour\\nget IpNode --format json colour\\nget IpNode colour\\n' | "
                               "trsctl batch --keep-going");
    EXPECT_THAT(lines.error, testing::MatchesRegex("'colour' .*\nstandard input:1: .*\n\\{\"error\":.*\\}\n"
                                                   "standard input:2: .*\n'colour' .*\nstandard input:3: .*\n"))
        << "the format of one line is not that of the next";
}

// Reads that take keys are many, and come when the others are over.
TEST_F(TrsctlFailures, AUnitThatIsLostAmongReadsByKeysHasNoSnapshot)
{
    Unit sim = unit();
    sim.does("fault close operation=HwmUnit.getModule");
    for (char const* const verb : {"snapshot", "tree", "alarms", "interfaces", "counters"}) {
        Result const result = run({verb});
        EXPECT_EQ(result.code, 6) << verb;
        EXPECT_THAT(result.error, HasSubstr("getModule at ")) << verb;
    }
    sim.writeLine("clear");
    sim.does("fault delay operation=HwmUnit.getModule delay=300"); // of 16 modules, some of which are there
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_THAT(output({"snapshot"}), HasSubstr("HwmModule:HwmUnit-1/Module/1"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4)) << "one after the other";
}

TEST_F(TrsctlFailures, TextsInJsonAreNeitherCutNorEscapedTwice)
{
    Unit sim = unit();
    std::string const text = "a\\b\"" + std::string(3000, 'x') + "\xc3\xbc";
    EXPECT_EQ(output({"call", "IpNode", "setIpConfig", "site", "10.0.0.1", "10.0.0.2", "7", "text=" + text}), "");
    EXPECT_EQ(parsed({"get", "IpNode", "ipConfig", "site"})["text"], text);
}

TEST_F(TrsctlFailures, WhatIsQuotedInThemIsNeitherCutNorEscapedTwice)
{
    Unit sim = unit();
    std::string const odd = std::string(300, 'x') + "\\\xc3\xb6\x1b\"";
    for (Arguments const& arguments : std::initializer_list<Arguments>{
             {"set", "IpNode", "mtu", odd},
             {"get", odd, "mtu"},
             {"set", "EthIfNet:IfNet/Lmp", "ipAddrSequence", nlohmann::json{{odd, 1}}.dump()},
         }) {
        Arguments words = arguments;
        words.insert(words.end(), {"--format", "json"});
        nlohmann::json const told = nlohmann::json::parse(run(words).error, nullptr, false);
        ASSERT_TRUE(told.is_object()) << arguments[0];
        std::string const error = told["error"].get<std::string>();
        EXPECT_THAT(error, HasSubstr(std::string(300, 'x')));
        EXPECT_THAT(error, HasSubstr("\xc3\xb6"));
        EXPECT_THAT(error, testing::Not(HasSubstr("\\x"))) << "which is for terminals";
        EXPECT_THAT(run(arguments).error, testing::Not(HasSubstr("\x1b"))) << "which a terminal must not get";
    }
}

TEST_F(TrsctlFailures, NumbersInJsonAreNumbers)
{
    Unit sim = unit();
    nlohmann::json const bench = parsed({"bench", "IpNode", "mtu", "--count", "50"});
    EXPECT_EQ(bench["calls"], 50);
    for (char const* const name : {"refused", "failed", "seconds", "callsPerSecond"}) {
        EXPECT_TRUE(bench[name].is_number()) << name;
    }
    EXPECT_TRUE(bench["microseconds"]["p99"].is_number());
    // The time is that of the calls: 50 of them do not take the 50 ms between two looks at the progress.
    double const spent = bench["microseconds"]["p50"].get<double>() * 50 / 1e6;
    EXPECT_GE(bench["seconds"].get<double>(), spent * 0.9);
    EXPECT_NEAR(bench["callsPerSecond"].get<double>() * bench["seconds"].get<double>(), 50, 1);

    EXPECT_TRUE(parsed({"list"})[0]["operations"].is_number());
    EXPECT_TRUE(parsed({"list", "IfNet"})[0]["index"].is_number());
}

TEST_F(TrsctlFailures, DescribesOperationsAsData)
{
    nlohmann::json const operations = parsed({"describe", "IfNet"})["operations"];
    auto const named = [&operations](char const* name) {
        return *std::ranges::find_if(operations, [name](nlohmann::json const& each) { return each["name"] == name; });
    };
    EXPECT_EQ(named("setMtu"), nlohmann::json::parse(R"({"name": "setMtu", "index": 3, "road": "remote",
        "result": "ResponseInfo<SetClient>", "parameters": [{"name": "mtu", "type": "long", "direction": "in",
        "limits": {"least": 68, "most": 65535}, "unit": "octets"}]})"));
    nlohmann::json const create = parsed({"describe", "EthIfNet.createVlan"});
    EXPECT_EQ(create["parameters"][0]["limits"][".vlanId"], nlohmann::json::parse(R"({"least": 1, "most": 4094})"));
    EXPECT_EQ(create["parameters"][1]["direction"], "out");
    EXPECT_EQ(parsed({"describe", "FaultService.getOperState"})["road"], "local");
}

TEST_F(TrsctlFailures, NamesAreTakenInAnyCaseThatIsUnambiguous)
{
    Unit sim = unit();
    EXPECT_EQ(output({"get", "ipnode", "GETMTU"}), "mtu 1500\n");
    EXPECT_EQ(output({"get", "ethifnet:IfNet/Transport", "Mtu"}), "mtu 1500\n");
    EXPECT_EQ(output({"set", "IpNode", "mtu", "MTU=1400"}), "");
    EXPECT_EQ(output({"set", "IpNode", "transportMode", "transport_mode_iubip"}), "");
    EXPECT_EQ(output({"get", "IpNode", "transportMode"}), "mode TRANSPORT_MODE_IUBIP\n");
    EXPECT_EQ(output({"set", "HwmSensor:HwmUnit-1/Sensor", "temperature", "41"}), "");
    EXPECT_EQ(output({"call", "AdminState:PdhUnit-1/AdminState", "set", "locked"}), "result true\n");
    EXPECT_EQ(output({"get", "AdminState:PdhUnit-1/AdminState", "get"}), "result LOCKED\n");
}

} // namespace
