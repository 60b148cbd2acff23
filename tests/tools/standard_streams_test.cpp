// What the programs do when a standard stream is missing, full or left by its reader.
#include "tests/tools/Trsctl.h"

#include <filesystem>
#include <fstream>

namespace {

using testing::HasSubstr;

class StandardStreams : public TrsctlTest {
protected:
    ~StandardStreams() override { std::filesystem::remove(capture); }

    Result trsctl(std::string const& words) { return shell("trsctl --unit " + endpoint + ' ' + words); }

    std::string const capture = path + ".pcapng";
};

// What is opened later would get the stream's number, and a connection to the unit the program's output.
TEST_F(StandardStreams, ThatAreMissingAreNobodyElses)
{
    std::string const told = "standard output: Bad file descriptor\n";
    {
        Unit sim = unit();
        Result const get = trsctl("get IpNode mtu >&-");
        EXPECT_EQ(get.code, 1);
        EXPECT_EQ(get.error, told);
        EXPECT_EQ(trsctl("set IpNode mtu 1400 <&- >&- 2>&-").code, 0) << "it has nothing to say";
        EXPECT_EQ(trsctl("get IpNode mtu <&-").output, "mtu 1400\n");
        EXPECT_EQ(trsctl("get IpNode nothing 2>&-").code, 2);
        Result const batch = trsctl("batch <&-");
        EXPECT_EQ(batch.code, 2);
        EXPECT_EQ(batch.error, "standard input: Bad file descriptor\n");
        Result const adapter = shell("trsadapter --log-level none --once >&- <&- --unit " + endpoint);
        EXPECT_EQ(adapter.code, 1);
        EXPECT_EQ(adapter.error, told);
    }
    Result const sim = shell("trssim >&- --listen " + endpoint);
    EXPECT_EQ(sim.code, 1);
    EXPECT_EQ(sim.error, told);
    EXPECT_EQ(shell("trssim <&- --exit-on-eof --listen " + endpoint).output, "ready on " + endpoint + '\n');
    EXPECT_FALSE(socketExists());
}

TEST_F(StandardStreams, ThatTakeNoMoreAreComplainedOfOnce)
{
    Unit sim = unit({"--clock", "stepped"});
    auto calling = [&, number = 0](std::string const& verb) mutable { // once what the verb does is under way
        std::string const relayed = endpoint + ".relay" + std::to_string(++number); // its own: a caller may outlive it
        return "{ trsctl --unit " + relayed + " --wait 10 get IpNode mtu >/dev/null 2>&1 & }; trsctl --unit " +
               endpoint + ' ' + verb + " --listen " + relayed;
    };
    EXPECT_EQ(shell(calling("capture --count 6 -w " + capture)).code, 0);
    std::string const unit = "trsctl --unit " + endpoint + ' ';
    std::vector<std::string> const lines{
        "trsctl --help",
        "trsctl --version",
        "trsctl --man",
        "trsctl get --help",
        "trsctl list",
        "trsctl list IpNode",
        "trsctl describe IpNode",
        "trsctl describe IpNode.setMtu --template mtu",
        "trsctl completion bash",
        "trsctl complete -- ge",
        "trsctl dissector",
        "trsctl decode " + capture,
        "trsctl stats " + capture,
        unit + "get IpNode mtu",
        unit + "--format json get IpNode mtu",
        unit + "walk IpNode",
        unit + "tree",
        unit + "tree --dot",
        unit + "snapshot",
        unit + "snapshot -o /dev/stdout",
        unit + "wait IpNode mtu --where mtu=1500",
        unit + "bench IpNode mtu --count 2",
        calling("trace"),
        calling("stats --count 6"),
        "echo get IpNode mtu | " + unit + "batch --keep-going",
        "echo list | trsctl shell",
        unit + "watch NmiRmiAdapterServer & while kill -0 $!; do " + unit +
            "call NmiRmiAdapterServer notifyPublicIpAddrChangeRmi; done 2>/dev/null; wait $!",
        "trssim --help",
        "trssim --man",
        "trssim --listen " + endpoint + ".other",
        "trsadapter --help",
        "trsadapter --once --log-level none --unit " + endpoint};
    for (std::string const& line : lines) {
        Result const result = shell('(' + line + ") >/dev/full");
        EXPECT_EQ(result.code, 1) << line;
        EXPECT_THAT(result.error, HasSubstr("No space left on device\n")) << line;
        EXPECT_EQ(result.error.find("No space"), result.error.rfind("No space")) << line;
    }
    Result const limited = shell("ulimit -f 1; trsctl dissector >" + capture);
    EXPECT_EQ(limited.code, 1);
    EXPECT_EQ(limited.error, "standard output: File too large\n");
}

TEST_F(StandardStreams, WhoseReaderHasGoneEndTheProgramQuietly)
{
    Unit sim = unit({"--clock", "stepped"});
    std::string const relayed = endpoint + ".relay";
    for (std::string const& line :
         {std::string("trsctl dissector"), "trsctl --unit " + endpoint + " trace --listen " + relayed}) {
        Result const result =
            shell("{ " + line + "; echo \"exit code $?\" >&2; touch " + capture + "; } | true & while [ ! -e " +
                  capture + " ]; do trsctl --unit " + relayed + " get IpNode mtu; done >/dev/null 2>&1");
        std::filesystem::remove(capture);
        EXPECT_THAT(result.error, testing::EndsWith("exit code 0\n")) << line;
        EXPECT_THAT(result.error, testing::Not(HasSubstr("standard output"))) << line;
    }
    EXPECT_FALSE(std::filesystem::exists(relayed.substr(5))) << "it ended without cleaning up";
}

} // namespace
