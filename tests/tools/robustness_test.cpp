// What the programs do with hostile documents, files that are none, and disks that are full.
#include "catalogue/File.h"
#include "catalogue/SimulatorClient.h"
#include "catalogue/Value.h"
#include "rmi/TreflectHandlerState.h"
#include "tests/tools/Trsctl.h"
#include "unit/Scenario.h"
#include "unit/Unit.h"

#include <filesystem>
#include <fstream>

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

std::string contentOf(std::string const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string nested(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

class Robustness : public TrsctlTest {
protected:
    Robustness() { fs::create_directory(scratch); }
    ~Robustness() override { fs::remove_all(scratch); }

    std::string file(std::string const& name) const { return scratch + '/' + name; }
    std::string written(std::string const& name, std::string const& content) const
    {
        std::ofstream(file(name), std::ios::binary) << content;
        return file(name);
    }
    std::string trsctl() const { return "trsctl --unit " + endpoint + ' '; }

    std::string const scratch = path + ".files";
};

TEST_F(Robustness, ADocumentIsRefusedWhenItIsNestedTooDeep)
{
    Unit const sim = unit({"--clock", "stepped"});
    std::string const deep = written("deep.json", nested(100'000));
    std::string const snapshot = written("snapshot.json", R"({"objects": )" + nested(100'000) + '}');
    std::string const limit = "nested more than 100 levels deep";
    for (Arguments const& arguments : {Arguments{"call", "IfNet:IfNet/Transport", "setIpAddrSequence", "@" + deep},
                                       Arguments{"diff", snapshot, snapshot}, Arguments{"diff", deep, deep}}) {
        Result const result = run(arguments);
        EXPECT_EQ(result.code, 2);
        EXPECT_THAT(result.error, HasSubstr(limit));
    }
    ChildProcess loading(program("trssim"), {"--listen", endpoint + ".other", "--scenario", deep});
    EXPECT_EQ(loading.waitForExit(), 2);
    loading.readUntil(limit, ChildProcess::Stream::error);

    SimulatorClient const simulator{TipprmiOID(SimulatorClient::SIMULATOR_OID)};
    trs::Broker::instance().addPeer(endpoint);
    TreflectHandlerState const running;
    std::string wrong;
    EXPECT_TRUE(simulator.applyScenario(nested(250'000), wrong) == RunClient::FAILED);
    EXPECT_THAT(wrong, HasSubstr(limit));
    EXPECT_TRUE(simulator.applyScenario(R"({"time": 1000000000000000})", wrong) == RunClient::FAILED);
    EXPECT_EQ(wrong, "\"time\" is 1000000000000000, and a unit's ends with 4294967295");
    EXPECT_TRUE(simulator.applyScenario(R"({"time": 4294967295})", wrong) == RunClient::OK) << wrong;
    EXPECT_TRUE(simulator.applyScenario("[\"" + std::string(200, '[') + "\\\"\"]", wrong) == RunClient::FAILED);
    EXPECT_EQ(wrong, "a scenario is a JSON object") << "brackets in a text nest nothing";
}

TEST_F(Robustness, TimeThatPassesAtOnceLeavesTheSameAsTimeThatPassesBitByBit)
{
    auto const after = [](std::vector<unsigned long> const& steps) {
        trs::sim::Unit unit;
        for (unsigned long const seconds : steps) {
            unit.advance(seconds);
        }
        TreflectHandlerState const running;
        return trs::sim::scenario::save(unit);
    };
    EXPECT_EQ(after({500, 300'000}), after(std::vector<unsigned long>(3005, 100)));
}

TEST_F(Robustness, ACaptureFromTheEndOfTimeIsRefused)
{
    Unit const sim = unit({"--clock", "stepped"});
    std::string const relayed = endpoint + ".relay";
    ChildProcess between(program("trsctl"),
                         {"--unit", endpoint, "capture", "--listen", relayed, "--count", "2", "-w", file("c")});
    between.readUntil("relaying", ChildProcess::Stream::error);
    shell("trsctl --unit " + relayed + " get IpNode mtu"); // whose answer may be lost with the relay
    EXPECT_EQ(between.waitForExit(), 0);

    std::string content = contentOf(file("c"));
    std::size_t place = 0;
    for (int block = 0; block < 2; ++block) { // behind which the first packet stands
        std::uint32_t length = 0;
        std::memcpy(&length, content.data() + place + 4, sizeof length);
        place += length;
    }
    std::memcpy(content.data() + place + 12, "\0\0\0\x80\0\0\0\0", 8); // -2^63, were it signed
    written("c", content);
    Result const result = run({"decode", file("c")});
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.error, HasSubstr("9223372036854775808 ns is after the year 2262"));
}

TEST_F(Robustness, ADirectoryIsNoFile)
{
    std::string const told = "Is a directory";
    for (std::string const& line :
         {trsctl() + "call IfNet:IfNet/Transport setIpAddrSequence @" + scratch, trsctl() + "batch " + scratch,
          trsctl() + "batch <" + scratch, trsctl() + "diff " + scratch + ' ' + scratch,
          trsctl() + "diff - " + scratch + " <" + scratch, trsctl() + "decode " + scratch,
          trsctl() + "decode - <" + scratch, trsctl() + "shell <" + scratch, trsctl() + "stats " + scratch,
          "trssim --listen " + endpoint + " --scenario " + scratch}) {
        Result const result = shell(line);
        EXPECT_EQ(result.code, 2) << line;
        EXPECT_THAT(result.error, HasSubstr(told)) << line;
    }
    std::string const huge = written("huge", "");
    fs::resize_file(huge, trs::catalogue::mostOfAFile + 1);
    EXPECT_THAT(run({"diff", huge, huge}).error, HasSubstr("more than 64 MiB"));
}

TEST_F(Robustness, AFileIsWrittenAsAWholeOrStaysAsItWas)
{
    using trs::catalogue::writeWholeFile;
    std::string const kept = written("kept", "old");
    fs::permissions(kept, fs::perms::owner_all | fs::perms::others_read);
    fs::create_symlink("kept", file("link"));
    fs::create_symlink("made", file("dangling"));
    EXPECT_FALSE(writeWholeFile(file("link"), "new"));
    EXPECT_FALSE(writeWholeFile(file("dangling"), "made"));
    EXPECT_EQ(contentOf(kept), "new");
    EXPECT_EQ(fs::status(kept).permissions(), fs::perms::owner_all | fs::perms::others_read);
    EXPECT_EQ(contentOf(file("made")), "made");
    EXPECT_TRUE(fs::is_symlink(file("link")) && fs::is_symlink(file("dangling")));

    EXPECT_EQ(writeWholeFile("/dev/full", "x"), std::errc::no_space_on_device);
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_EQ(writeWholeFile(scratch, "x"), std::errc::is_a_directory);
    EXPECT_EQ(writeWholeFile(file("none/x"), "x"), std::errc::no_such_file_or_directory);

    Unit sim = unit({"--clock", "stepped"});
    EXPECT_EQ(shell(trsctl() + "snapshot -o /dev/stdout | grep -c getMtu >&2").code, 0);
    Result const full = shell("ulimit -f 1; " + trsctl() + "snapshot -o " + kept);
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(full.error, "'" + kept + "' cannot be written: File too large\n");
    EXPECT_EQ(contentOf(kept), "new");
    EXPECT_EQ(sim.rejects("save /dev/full"), "save: '/dev/full' cannot be written: No space left on device");
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch), {}), 4) << "something was left behind";
}

TEST_F(Robustness, ACaptureEndsWithItsLastWholeMessageWhenTheDiskIsFull)
{
    Unit const sim = unit({"--clock", "stepped"});
    std::string const relayed = endpoint + ".relay";
    ChildProcess between("/bin/sh", {"-c", "ulimit -f 2; exec " + program("trsctl") + " --unit " + endpoint +
                                               " capture --listen " + relayed + " -w " + file("c")});
    between.readUntil("relaying", ChildProcess::Stream::error);
    ChildProcess calls(
        "/bin/sh", {"-c", "while " + program("trsctl") + " --unit " + relayed + " get IpNode mtu; do :; done 2>&1"});
    EXPECT_EQ(between.waitForExit(), 1);
    between.readUntil("takes no more: File too large", ChildProcess::Stream::error);
    calls.waitForExit();
    Result const decoded = run({"decode", file("c")});
    EXPECT_EQ(decoded.code, 0) << decoded.error;
    EXPECT_THAT(decoded.output, HasSubstr("getMtu"));
}

TEST_F(Robustness, ALogOfCallsEndsWithItsLastWholeLineWhenTheDiskIsFull)
{
    ChildProcess sim("/bin/sh", {"-c", "ulimit -f 1; exec " + program("trssim") + " --listen " + endpoint +
                                           " --clock stepped --log-calls " + file("log")});
    sim.readUntil("ready on ");
    Result const calls = run({"bench", "IpNode", "mtu", "--count", "100"});
    EXPECT_EQ(calls.code, 0) << "the unit serves on";
    sim.signal(SIGTERM);
    EXPECT_EQ(sim.waitForExit(), 1);
    sim.readUntil("cannot be written: File too large", ChildProcess::Stream::error);
    std::string const log = contentOf(file("log"));
    EXPECT_THAT(log, testing::EndsWith("}\n"));
    std::istringstream lines(log);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_TRUE(trs::catalogue::Value::parse(line, nullptr, false).is_object()) << line;
    }
    EXPECT_GT(count, 0);
    EXPECT_LT(count, 100);
}

TEST_F(Robustness, ALogOfCallsThatIsNotWholeIsToldOnce)
{
    Unit sim = unit({"--clock", "stepped", "--log-calls", "/dev/full"});
    EXPECT_EQ(run({"get", "IpNode", "mtu"}).code, 0);
    EXPECT_EQ(run({"get", "IpNode", "mtu"}).code, 0);
    sim.writeLine("stop");
    EXPECT_EQ(sim.waitForExit(), 1);
    std::vector<std::string> const told = sim.readRest(ChildProcess::Stream::error);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], HasSubstr("'/dev/full' cannot be written: No space left on device"));
}

} // namespace
