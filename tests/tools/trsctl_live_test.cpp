// trsctl's verbs on what happens at a unit, on all that it tells, and on how fast it answers.
#include "catalogue/Text.h"
#include "tests/support/LongWay.h"
#include "tests/tools/Trsctl.h"
#include "tools/trsctl/Predicate.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using Json = nlohmann::json;

class TrsctlLive : public TrsctlTest {
protected:
    ~TrsctlLive() override
    {
        for (char const* const name : {".a", ".b"}) {
            std::filesystem::remove(path + name);
        }
    }
    // A trsctl that goes on, with the test's unit.
    struct Running : ChildProcess {
        Running(std::string const& endpoint, Arguments arguments)
            : ChildProcess(program("trsctl"), with(endpoint, arguments))
        {
        }
        static Arguments& with(std::string const& endpoint, Arguments& arguments)
        {
            arguments.insert(arguments.begin(), {"--unit", endpoint});
            return arguments;
        }
        void awaitWatching() { EXPECT_THAT(readLine(Stream::error).value_or(""), testing::StartsWith("watching ")); }
    };

    Unit sim = unit({"--clock", "stepped"});
};

TEST(Predicates, HoldOrAreWrong)
{
    trs::catalogue::Value const value = {{"mtu", 1500}, {"name", "eth 0"}, {"list", {{{"id", 7}}, {{"id", 8}}}}};
    struct {
        char const* text;
        bool holds;
    } const cases[] = {
        {"mtu=1500", true},
        {"mtu = 1500", true},
        {"mtu!=1500", false},
        {"mtu<1500", false},
        {"mtu<=1500", true},
        {"mtu>900", true},
        {"mtu>=1501", false},
        {"name=eth 0", true},
        {"name~th", true},
        {"name~x", false},
        {"list[1].id=8", true},
        {"list[2].id=8", false},
        {"mtu=1500 and name~eth", true},
        {"mtu=1500 and name~x", false},
        {"other!=1", false},
        {"name=", false},
    };
    for (auto const& [text, holds] : cases) {
        trs::ctl::Predicate predicate;
        EXPECT_EQ(trs::ctl::Predicate::parse(text, predicate), "") << text;
        EXPECT_EQ(predicate.holds(value), holds) << text;
    }
    for (char const* const text : {"", "mtu", "=5", "mtu=>5", "mtu==5", "mtu=1 and ", " and mtu=1"}) {
        trs::ctl::Predicate predicate;
        EXPECT_THAT(trs::ctl::Predicate::parse(text, predicate), HasSubstr("is no comparison")) << text;
    }
}

TEST_F(TrsctlLive, WatchesWhatHappens)
{
    Running watch(endpoint, {"watch", "IpNode", "setMtu", "--where", "mtu>1300", "--count", "2"});
    watch.awaitWatching();
    Running json(endpoint, {"watch", "Condition:AppObject-1/Condition/los", "--count", "1", "--format", "json"});
    json.awaitWatching();
    for (char const* const mtu : {"1200", "1400", "1401"}) {
        EXPECT_EQ(output({"set", "IpNode", "mtu", mtu}), "");
    }
    EXPECT_TRUE(sim.writeLine("raise los"));
    EXPECT_EQ(watch.waitForExit(), 0);
    EXPECT_THAT(watch.readRest(),
                testing::ElementsAre(EndsWith(" IpNode:IpNode setMtu result.subSystem=0 result.failed=0 mtu=1400"),
                                     EndsWith(" mtu=1401")));
    EXPECT_EQ(json.waitForExit(), 0);
    Json const event = Json::parse(json.readRest().at(0), nullptr, false);
    EXPECT_EQ(event["operation"], "raise");
    EXPECT_EQ(event["parameters"]["result"]["failed"], 0);
}

TEST_F(TrsctlLive, WaitsUntilSomethingIsSo)
{
    Running reads(endpoint, {"wait", "IpNode", "mtu", "--where", "mtu=1300"});
    EXPECT_EQ(output({"set", "IpNode", "mtu", "1300"}), "");
    EXPECT_EQ(reads.waitForExit(), 0);
    EXPECT_THAT(reads.readRest(), testing::ElementsAre("mtu 1300"));
    Running happens(endpoint, {"wait", "Condition:AppObject-1/Condition/deg", "raise"});
    happens.awaitWatching();
    EXPECT_TRUE(sim.writeLine("raise deg"));
    EXPECT_EQ(happens.waitForExit(), 0);

    EXPECT_EQ(run({"wait", "IpNode", "mtu", "--where", "mtu=1", "--for", "0.01"}).code, 5);
    EXPECT_EQ(run({"wait", "IpNode", "setMtu", "--for", "0.01"}).code, 5);
    EXPECT_EQ(run({"wait", "Condition:Nobody", "raise"}).code, 3);
    Result const wrong = run({"watch", "IpNode", "setMtu", "--where", "mtu"});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_THAT(wrong.error, HasSubstr("'mtu' is no comparison"));
    EXPECT_EQ(run({"watch", "IpNode", "fly"}).code, 2);
    sim.signal(SIGKILL);
    sim.waitForExit();
    EXPECT_EQ(run({"watch", "IpNode", "setMtu"}).code, 6);
}

TEST_F(TrsctlLive, ComparesSnapshots)
{
    EXPECT_EQ(output({"snapshot", "-o", path + ".a"}), "");
    EXPECT_EQ(run({"diff", path + ".a", endpoint}).output, "");
    EXPECT_EQ(output({"set", "IpNode", "mtu", "1400"}), "");
    EXPECT_EQ(output({"call", "EthIfNet:IfNet/Transport", "deleteVlan", "100"}), "");
    EXPECT_EQ(output({"snapshot", "-o", path + ".b"}), "");

    Result const all = run({"diff", path + ".a", path + ".b"});
    EXPECT_EQ(all.code, 1);
    EXPECT_THAT(all.output, HasSubstr("~ IpNode:IpNode getMtu.mtu 1500 -> 1400\n"));
    EXPECT_THAT(all.output, HasSubstr("- VlanIfNet:IfNet/Transport/Vlan/100\n"));
    EXPECT_THAT(all.output, testing::Not(HasSubstr("+ ")));
    EXPECT_THAT(run({"diff", path + ".b", path + ".a"}).output, HasSubstr("+ VlanIfNet:IfNet/Transport/Vlan/100\n"));
    Arguments ignoring{"diff", path + ".a", endpoint};
    for (char const* const pattern : {"*Vlan*", "*/Condition/*", "* getMtu.*"}) {
        ignoring.insert(ignoring.end(), {"--ignore", pattern});
    }
    Result const ignored = run(ignoring);
    EXPECT_EQ(ignored.output, "");
    EXPECT_EQ(ignored.code, 0);
    Json const line = Json::parse(
        run({"diff", path + ".a", path + ".b", "--format", "json", "--ignore", "*Vlan*"}).output, nullptr, false);
    EXPECT_EQ(line["place"], "IpNode:IpNode getMtu.mtu");
    EXPECT_EQ(line["after"], 1400);

    std::ofstream(path + ".b") << "{\"objects\": 1}";
    for (std::string const& side : {path + ".b", path + ".none"}) {
        Result const wrong = run({"diff", path + ".a", side});
        EXPECT_EQ(wrong.code, 2);
        EXPECT_THAT(wrong.error, HasSubstr(side));
    }
    EXPECT_EQ(run({"snapshot", "-o", "/nowhere/x"}).code, 2);
    EXPECT_EQ(run({"snapshot", "IpNode:Nobody", "-o", path + ".none"}).code, 3);
    EXPECT_FALSE(std::ifstream(path + ".none").good()) << "nothing is written then";
}

TEST(CommandLines, AreSplitAsAShellDoes)
{
    struct {
        char const* line;
        std::vector<std::string> words;
        bool isGood = true;
    } const cases[] = {
        {"", {}},
        {"  # nothing", {}},
        {"get IpNode  mtu # more", {"get", "IpNode", "mtu"}},
        {"a#b '#' \"x y\"z", {"a#b", "#", "x yz"}},
        {R"(a\ b '\n' "\"\\n" '')", {"a b", R"(\n)", R"("\n)", ""}},
        {R"("\$x \`y \z")", {R"($x `y \z)"}},
        {R"([1,2] '{"a": "b"}')", {"[1,2]", R"({"a": "b"})"}},
        {"'open", {}, false},
        {"end\\", {}, false},
    };
    for (auto const& [line, expected, isGood] : cases) {
        std::vector<std::string> words;
        EXPECT_EQ(trs::catalogue::splitWords(line, words).empty(), isGood) << line;
        if (isGood) {
            EXPECT_EQ(words, expected) << line;
        }
    }
}

TEST_F(TrsctlLive, RunsManyLines)
{
    std::ofstream(path + ".a") << "# setup\nset IpNode mtu 1300\n\nget IpNode mtu --format json\nget IpNode nothing\n"
                                  "set IpNode mtu 1200\n";
    Result const stopped = run({"batch", path + ".a"});
    EXPECT_EQ(stopped.code, 2);
    EXPECT_EQ(stopped.output, "{\n  \"mtu\": 1300\n}\n");
    EXPECT_THAT(stopped.error, HasSubstr(path + ".a:5: ended with exit code 2"));
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1300\n");
    EXPECT_EQ(run({"batch", "--keep-going", path + ".a"}).code, 2);
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1200\n");

    Running piped(endpoint, {"batch", "--format", "json"});
    EXPECT_TRUE(piped.write("get IpNode mtu\n--unit unix:/nowhere get IpNode mtu\n"));
    piped.closeInput();
    EXPECT_EQ(piped.waitForExit(), 6) << "a line may ask another unit";
    EXPECT_THAT(joined(piped.readRest()), HasSubstr("1200"));
    EXPECT_EQ(run({"batch", "/nowhere"}).code, 2);
    std::ofstream(path + ".a") << "batch " << path << ".a\n";
    EXPECT_THAT(run({"batch", path + ".a"}).error, HasSubstr("nested"));
}

TEST_F(TrsctlLive, MeasuresCalls)
{
    Json const result = Json::parse(
        output({"bench", "IpNode", "mtu", "--count", "500", "--threads", "3", "--format", "json"}), nullptr, false);
    EXPECT_EQ(result["calls"], 500);
    EXPECT_EQ(result["failed"], 0);
    for (char const* const quantile : {"least", "p50", "p90", "p99", "most"}) {
        EXPECT_TRUE(result["microseconds"][quantile].is_number()) << quantile;
    }
    EXPECT_THAT(output({"bench", "IpNode", "getIpConfig", "nothing", "--count", "10"}), HasSubstr("refused 10\n"));
    sim.does("fault drop operation=IpNode.getMtu call=2 count=2");
    Result const faulty = run({"--timeout", "50", "bench", "IpNode", "mtu", "--count", "10"});
    EXPECT_NE(faulty.code, 0);
    EXPECT_THAT(faulty.output, HasSubstr("failed 2\n"));
}

// Somebody at a terminal. Without `exec`, a shell may stay in between and end by the interrupt that the verb takes.
TEST_F(TrsctlLive, ShellTakesCommandLines)
{
    std::string const home = path + ".home";
    ChildProcess shell("/usr/bin/script", {"-qec",
                                           "exec env XDG_STATE_HOME=" + home + " TERM=xterm " + program("trsctl") +
                                               " --unit " + endpoint + " shell --print-command",
                                           "/dev/null"});
    auto const shows = [&shell](std::string const& text) {
        for (std::optional<std::string> line = shell.readLine(); line; line = shell.readLine()) {
            if (line->find(text) != std::string::npos) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(shows("Tab completes"));
    shell.write("set IpN\tmtu '1400'\n");
    EXPECT_TRUE(shows("trsctl --unit " + endpoint + " set IpNode mtu 1400"));
    shell.write("get IpNode mt\t\n");
    EXPECT_TRUE(shows("\033[36mmtu\033[0m 1400")) << "in colour";
    shell.write("sing\n");
    EXPECT_TRUE(shows("'sing' is no verb"));
    shell.write("watch IpNode\n");
    EXPECT_TRUE(shows("watching IpNode"));
    shell.write("\003");
    shell.write("'open\n");
    EXPECT_TRUE(shows("the quote that opens 'open' is not closed")) << "an interrupt ends the verb, not the shell";
    shell.write("exit\n");
    EXPECT_EQ(shell.waitForExit(), 2) << "the last line's";
    std::ifstream history(home + "/trsctl/history");
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(history), {}), HasSubstr("sing\n"));
    std::filesystem::remove_all(home);
    EXPECT_EQ(output({"--color", "always", "get", "IpNode", "mtu"}), "\033[36mmtu\033[0m 1400\n");
    Running piped(endpoint, {"shell"});
    piped.write("get IpNode mtu\nquit\nget IpNode mtu\n");
    EXPECT_EQ(piped.waitForExit(), 0);
    EXPECT_THAT(piped.readRest(), testing::ElementsAre("mtu 1400"));
}

TEST_F(TrsctlLive, ShowsProgressOnATerminalOnly)
{
    auto const atTerminal = [this](std::string const& words) {
        ChildProcess terminal("/usr/bin/script",
                              {"-qec", program("trsctl") + " --unit " + endpoint + " " + words, "/dev/null"});
        terminal.waitForExit();
        return joined(terminal.readRest());
    };
    EXPECT_THAT(atTerminal("bench IpNode mtu --count 10000000 --for 0.8"), HasSubstr("calls ["));
    Result const none = run({"bench", "IpNode", "mtu", "--count", "10000000", "--for", "0.8"});
    EXPECT_EQ(none.error, "");
    sim.does("fault drop operation=IpNode.getMtu");
    sim.does("fault delay object=IpNode delay=60");
    EXPECT_THAT(atTerminal("--timeout 400 walk IpNode"),
                testing::ContainsRegex("operations \\[#+\\.+\\] [0-9]+ of 31\r\033\\[KIpNode:IpNode getMtu"))
        << "a complaint has a line of its own";
}

TEST_F(TrsctlLive, TellsWhatTheSimulatorLists)
{
    EXPECT_THAT(output({"call", "Simulator", "execute", "help"}), HasSubstr("lists the commands"));
    sim.readUntil("load FILE"); // as it is said there, too
    EXPECT_THAT(output({"call", "Simulator", "execute", "conditions"}), HasSubstr("loss of signal"));
}

// 20 ms there and back, as to a unit in another country: the answers come together, not one after the other.
TEST_F(TrsctlLive, AsksForManyThingsAtOnce)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds oneWay{10};
#ifdef TRSMAN_SANITIZED // whose checks take more time than the way does
    constexpr int least = 5;
#else
    constexpr int least = 20;
#endif
    std::string const calls = path + ".a";
    std::string const served = path + ".unit";
    Unit const logging("unix:" + served, {"--log-calls", calls});
    support::LongWay const way(path + ".far", served, oneWay);
    for (char const* const verb : {"snapshot", "tree"}) {
        std::filesystem::resize_file(calls, 0);
        auto const begin = Clock::now();
        ChildProcess child(program("trsctl"), {"--unit", "unix:" + path + ".far", verb});
        std::size_t const lines = child.readRest().size();
        EXPECT_EQ(child.waitForExit(), 0);
        auto const time = Clock::now() - begin;
        std::ifstream log(calls);
        auto const count = std::count(std::istreambuf_iterator<char>(log), {}, '\n');
        EXPECT_GT(count, 100);
        EXPECT_LE(least * time, count * 2 * oneWay) << verb << ": " << count << " calls for " << lines << " lines in "
                                                    << std::chrono::duration<double>(time).count() << " s";
    }
    std::filesystem::remove(path + ".far");
}

} // namespace
