// trsctl's shell at a terminal.
#include "tests/tools/Trsctl.h"

#include <filesystem>
#include <fstream>
#include <pty.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// A program that has a terminal of its own, and its other end.
class Terminal {
public:
    Terminal(std::string const& program, std::vector<std::string> const& arguments, std::string const& home)
    {
        std::vector<char*> words{const_cast<char*>(program.c_str())};
        for (std::string const& each : arguments) {
            words.push_back(const_cast<char*>(each.c_str()));
        }
        words.push_back(nullptr);
        std::vector<std::string> variables{"HOME=" + home, "TERM=dumb", "PATH=/usr/bin:/bin"};
        std::vector<char*> environment;
        for (std::string& each : variables) {
            environment.push_back(each.data());
        }
        environment.push_back(nullptr);
        int end = -1;
        id_ = ::forkpty(&end, nullptr, nullptr, nullptr);
        if (id_ == 0) {
            ::execve(words.front(), words.data(), environment.data());
            ::_exit(127);
        }
        end_ = support::Descriptor(end);
    }
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;
    ~Terminal()
    {
        if (id_ > 0) {
            ::kill(id_, SIGKILL);
            ::waitpid(id_, nullptr, 0);
        }
    }

    void type(std::string const& keys) { EXPECT_EQ(::write(end_.get(), keys.data(), keys.size()), std::ssize(keys)); }
    // What is shown up to a text, behind what was read before.
    std::string readUntil(std::string const& text)
    {
        auto const end = std::chrono::steady_clock::now() + support::patience;
        for (std::size_t at = seen_.find(text); at == std::string::npos; at = seen_.find(text)) {
            auto const left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            pollfd waiting{end_.get(), POLLIN, 0};
            std::array<char, 4096> room;
            ssize_t count = 0;
            if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0 ||
                (count = ::read(end_.get(), room.data(), room.size())) <= 0) {
                ADD_FAILURE() << "'" << text << "' is not shown, but: " << seen_;
                return {};
            }
            seen_.append(room.data(), static_cast<std::size_t>(count));
        }
        std::size_t const length = seen_.find(text) + text.size();
        std::string const shown = seen_.substr(0, length);
        seen_.erase(0, length);
        return shown;
    }

private:
    support::Descriptor end_;
    std::string seen_;
    pid_t id_ = -1;
};

constexpr char const* interrupt = "\x03";

class TrsctlShell : public TrsctlTest {
protected:
    Terminal shellAt(std::string const& unit)
    {
        return {program("trsctl"), {"--unit", unit, "shell"}, directory.file("")};
    }
};

TEST_F(TrsctlShell, AnInterruptDiscardsTheLineOrEndsTheVerbAtOnce)
{
    Unit sim = unit();
    Terminal terminal = shellAt(endpoint);
    terminal.readUntil("trsctl> ");
    terminal.type("set IpNode mtu 14");
    terminal.readUntil("14");
    terminal.type(interrupt);
    terminal.readUntil("trsctl> ");
    terminal.type("get IpNode mtu\n");
    EXPECT_THAT(terminal.readUntil("mtu 1500"), Not(HasSubstr("is no")));
    terminal.readUntil("trsctl> ");

    // While a reply is awaited that never comes, and while nothing happens.
    sim.does("fault drop operation=IpNode.getMtu");
    auto const begin = std::chrono::steady_clock::now();
    terminal.type("--timeout 600000\n");
    terminal.readUntil("trsctl> ");
    terminal.type("get IpNode mtu\n");
    while (output({"call", "Simulator", "execute", "faults"}).find("1 of 1") == std::string::npos) {
        ASSERT_LT(std::chrono::steady_clock::now() - begin, support::patience) << "the call does not arrive";
    }
    terminal.type(interrupt);
    EXPECT_THAT(terminal.readUntil("trsctl> "), HasSubstr("getMtu at "));
    terminal.type("watch IpNode\n");
    terminal.readUntil("watching");
    terminal.type(interrupt);
    terminal.readUntil("trsctl> ");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, support::patience);
    terminal.type("quit\n");
}

TEST_F(TrsctlShell, WhatDestroysAsksBefore)
{
    Unit sim = unit();
    Terminal terminal = shellAt(endpoint);
    terminal.readUntil("trsctl> ");
    terminal.type("call EthIfNet:IfNet/Transport deleteVlan 100\n");
    terminal.readUntil("sure? [y/N] ");
    terminal.type("n\n");
    terminal.readUntil("nothing is done");
    EXPECT_EQ(run({"get", "VlanIfNet:IfNet/Transport/Vlan/100", "mtu"}).code, 0);
    terminal.type("call EthIfNet:IfNet/Transport setFlags 0\n");
    terminal.readUntil("sure? [y/N] ");
    terminal.type("y\n");
    terminal.readUntil("trsctl> ");
    EXPECT_EQ(output({"get", "EthIfNet:IfNet/Transport", "flags"}), "flags 0\n");
    terminal.type("call AdminState:IfNet/Transport/AdminState set LOCKED\n");
    terminal.readUntil("sure? [y/N] ");
    terminal.type("\n");
    terminal.readUntil("nothing is done");
    terminal.type("call EthIfNet:IfNet/Transport deleteVlan 100 --yes\n");
    terminal.readUntil("trsctl> ");
    EXPECT_EQ(run({"get", "VlanIfNet:IfNet/Transport/Vlan/100", "mtu"}).code, 3);
    EXPECT_EQ(run({"call", "EthIfNet:IfNet/Transport", "deleteVlan", "200"}).code, 0) << "nobody is there to ask";
}

TEST_F(TrsctlShell, AnAppliedFileAsksBeforeItRemovesAnything)
{
    Unit sim = unit();
    std::string const wanted = directory.file("wanted.json");
    std::ofstream(wanted) << R"({"objects": {"VlanIfNet:IfNet/Transport/Vlan/100": null, "IpNode": {"mtu": 1400}}})";
    Terminal terminal = shellAt(endpoint);
    terminal.readUntil("trsctl> ");
    terminal.type("apply " + wanted + '\n');
    EXPECT_THAT(terminal.readUntil("sure? [y/N] "), HasSubstr("- EthIfNet:IfNet/Transport deleteVlan vlanId=100"));
    terminal.type(interrupt);
    terminal.readUntil("nothing is done");
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1500\n");
    terminal.type("apply --yes " + wanted + '\n');
    EXPECT_THAT(terminal.readUntil("deleteVlan"), Not(HasSubstr("sure?")));
    terminal.readUntil("trsctl> ");
    terminal.type("apply " + wanted + '\n');
    EXPECT_THAT(terminal.readUntil("trsctl> "), Not(HasSubstr("sure?"))) << "nothing is left to do";
    EXPECT_EQ(output({"get", "IpNode", "mtu"}), "mtu 1400\n");
}

TEST_F(TrsctlShell, ManyUnitsTakeItsLinesAndItsOptions)
{
    Unit sim = unit();
    std::string const other = "unix:" + directory.file("other");
    ChildProcess second(program("trssim"), {"--listen", other});
    second.readUntil("ready");
    std::string const trsctl = " | trsctl --unit " + endpoint + " --unit " + other + ' ';
    Result const result = shell("printf 'set IpNode mtu 1400\\n--value-only\\nget IpNode mtu\\n'" + trsctl + "shell");
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, AllOf(HasSubstr(endpoint + ": 1400\n"), HasSubstr(other + ": 1400\n")));
    EXPECT_EQ(shell("echo set IpNode mtu 1300" + trsctl + "batch").code, 0);
    EXPECT_EQ(shell("echo 1200" + trsctl + "set IfNet:IfNet/Lmp mtu @-").code, 0);
    for (std::string const& each : {endpoint, other}) {
        EXPECT_EQ(shell("trsctl --unit " + each + " get IpNode mtu").output, "mtu 1300\n");
        EXPECT_EQ(shell("trsctl --unit " + each + " get IfNet:IfNet/Lmp mtu").output, "mtu 1200\n");
    }
    EXPECT_EQ(shell("true" + trsctl + "edit IpNode").code, 2) << "an editor is for one";
    EXPECT_EQ(shell("echo get IpNode mtu --unit " + other + trsctl + "--value-only shell --print-command").error,
              "trsctl --value-only get IpNode mtu --unit " + other + '\n');
    std::filesystem::remove(directory.file("other"));
}

TEST_F(TrsctlShell, OptionsAloneHoldFromThenOn)
{
    Unit sim = unit();
    std::string const lines = "get IpNode mtu\\n--format json\\nget IpNode mtu\\n--format text --timeout 100\\n"
                              "get IpNode mtu\\nhelp get\\nget IpNode -h\\nexit\\nget IpNode mtu\\n";
    Result const result = shell("printf '" + lines + "' | trsctl --unit " + endpoint + " shell");
    EXPECT_THAT(result.output, testing::StartsWith("mtu 1500\n{\n  \"mtu\": 1500\n}\nmtu 1500\nRead something"));
    EXPECT_THAT(result.output, Not(testing::EndsWith("mtu 1500\n")));
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.code, 0);
}

// All programs know the same words for the same.
TEST_F(TrsctlShell, HelpAndTheEndAreAskedForAlikeEverywhere)
{
    for (char const* const name : {"trsctl", "trssim", "trsadapter"}) {
        std::string const help = shell(std::string(name) + " --help").output;
        EXPECT_EQ(shell(std::string(name) + " -h").output, help);
        EXPECT_EQ(shell(std::string(name) + " help").output, help);
    }
    EXPECT_EQ(shell("trsctl help get").output, shell("trsctl get --help").output);
    EXPECT_THAT(shell("trsctl help get").output, AllOf(HasSubstr("Options of all verbs"), HasSubstr("--unit"),
                                                       HasSubstr("--format"), HasSubstr("--timeout")));
    for (char const* const word : {"exit", "quit", "stop"}) {
        Unit sim = unit();
        sim.writeLine(word);
        EXPECT_EQ(sim.waitForExit(), 0) << word;
    }
}

} // namespace
