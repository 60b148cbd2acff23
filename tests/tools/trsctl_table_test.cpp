// What is made of trsctl's table of options: manual pages and completion.
#include "tests/tools/Trsctl.h"
#include "tools/support/ManPage.h"
#include "tools/trsctl/Completion.h"

#include <filesystem>
#include <fstream>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

class TrsctlTable : public TrsctlTest {
protected:
    ~TrsctlTable() override { std::filesystem::remove(path + ".file"); }
    std::vector<std::string> complete(std::vector<std::string> const& words)
    {
        trs::ctl::Program::Options options;
        options.unit = endpoint;
        trs::ctl::Program program(options);
        return trs::ctl::completions(program, words);
    }
    // Runs a program of the system with a file of this content as its last argument.
    ChildProcess withFile(std::string const& name, Arguments arguments, std::string const& content) const
    {
        std::ofstream(path + ".file") << content;
        arguments.push_back(path + ".file");
        return ChildProcess("/usr/bin/" + name, arguments);
    }
};

TEST_F(TrsctlTable, NoVerbAndNoOptionIsMissing)
{
    trs::ctl::Program program({});
    std::string const page = trs::tools::manPage(program.table(), "1");
    std::vector<std::string> const verbs = complete({""});
    EXPECT_GT(verbs.size(), 12U);
    std::ifstream file(source("docs/trsctl.md"));
    std::string const document(std::istreambuf_iterator<char>(file), {});
    for (trs::tools::Verb const& verb : program.table().verbs) {
        if (verb.isHidden) {
            EXPECT_THAT(verbs, Not(Contains(verb.name)));
            continue;
        }
        EXPECT_THAT(verbs, Contains(verb.name));
        EXPECT_THAT(document, testing::AnyOf(HasSubstr('`' + verb.name + '`'), HasSubstr('`' + verb.name + ' ')));
        std::string const help = output({verb.name, "--help"});
        std::size_t const begin = page.find(".SS " + verb.name + "\n");
        ASSERT_NE(begin, std::string::npos) << verb.name;
        std::string const section = page.substr(begin, page.find("\n.S", begin) - begin);
        std::vector<std::string> const offered = complete({verb.name, "--"});
        EXPECT_THAT(offered, IsSupersetOf({"--unit", "--timeout", "--wait", "--format", "--log-level"}));
        for (trs::tools::Option const& option : verb.options) {
            if (!option.isArgument()) {
                EXPECT_THAT(offered, Contains(option.longName()));
            }
            std::string name = option.name;
            for (std::size_t at = 0; (at = name.find('-', at)) != std::string::npos; at += 2) {
                name.replace(at, 1, "\\-");
            }
            EXPECT_THAT(section, HasSubstr("\\fB" + name + "\\fR")) << verb.name;
            EXPECT_THAT(help, HasSubstr(option.name)) << verb.name;
        }
    }
}

TEST_F(TrsctlTable, TheOtherProgramsAreCompletedToo)
{
    ChildProcess bash("/bin/bash", {"-c", "PATH=" + program("") +
                                              ":$PATH\neval \"$(trssim --completion bash)\"\n"
                                              "COMP_WORDS=(trssim --clock s) COMP_CWORD=2\n_trssim\n"
                                              "printf '%s\\n' \"${COMPREPLY[@]}\"\n"
                                              "COMP_WORDS=(trssim --sc) COMP_CWORD=1\n_trssim\n"
                                              "printf '%s\\n' \"${COMPREPLY[@]}\""});
    EXPECT_EQ(bash.waitForExit(), 0);
    EXPECT_THAT(bash.readRest(), ElementsAre("stepped", "--scenario"));
    for (char const* const name : {"trssim", "trsadapter"}) {
        ChildProcess fish("/usr/bin/fish", {"-N", "-c",
                                            program(name) +
                                                " --completion fish | source; "
                                                "complete -C '" +
                                                std::string(name) + " --log-level e'"});
        EXPECT_EQ(fish.waitForExit(), 0);
        EXPECT_THAT(fish.readRest(), Contains(testing::StartsWith("error"))) << name;
        ChildProcess zsh("/bin/zsh",
                         {"-f", "-n", "-c", joined(ChildProcess(program(name), {"--completion", "zsh"}).readRest())});
        EXPECT_EQ(zsh.waitForExit(), 0) << name;
    }
}

TEST_F(TrsctlTable, ValuesAreCompleted)
{
    EXPECT_THAT(complete({"set", "IpNode", "transportMode", ""}),
                IsSupersetOf({"mode=", "TRANSPORT_MODE_IUBIP", "TRANSPORT_MODE_DUALIUB"}));
    EXPECT_THAT(complete({"set", "IpNode", "transportMode", "mode=TRANSPORT_MODE_I"}),
                ElementsAre("mode=TRANSPORT_MODE_IUBIP"));
    EXPECT_THAT(complete({"call", "IpNode", "setIpConfig", "nu"}), ElementsAre("number="));
    EXPECT_THAT(complete({"set", "IpNode", "mplaneActivated", "t"}), ElementsAre("true"));
    EXPECT_THAT(complete({"call", "RmAccess:x", "setRestrictedMode", ""}), Contains("RESTRICTED_MODE_STATE_0"));
}

TEST_F(TrsctlTable, ManualPagesAreWellFormed)
{
    for (char const* const name : {"trsctl", "trssim", "trsadapter"}) {
        ChildProcess made(program(name), {"--man"});
        std::string const page = joined(made.readRest());
        EXPECT_THAT(page, testing::StartsWith(".TH ")) << name;
        ChildProcess lint = withFile("mandoc", {"-T", "lint", "-W", "error"}, page);
        EXPECT_EQ(lint.waitForExit(), 0) << name << ": " << joined(lint.readRest());
    }
}

TEST_F(TrsctlTable, CompletesWhatIsTyped)
{
    EXPECT_THAT(complete({"--format", ""}), ElementsAre("text", "json", "table"));
    EXPECT_THAT(complete({"--format", "json", "sn"}), ElementsAre("snapshot"));
    EXPECT_THAT(complete({"describe", "EthIfN"}), ElementsAre("EthIfNet"));
    EXPECT_THAT(complete({"describe", "IfNet.getM"}), ElementsAre("IfNet.getMtu"));
    EXPECT_THAT(complete({"get", "IpNode", "getMt"}), ElementsAre("getMtu"));
    EXPECT_THAT(complete({"get", "IpNode", "mt"}), ElementsAre("mtu"));
    EXPECT_THAT(complete({"get", "IpNode", "lm"}), ElementsAre("lmpIfNet"));
    EXPECT_THAT(complete({"set", "HwmLed:x", ""}), ElementsAre("updateLedState", "ledState", "setLedName", "ledName"));
    EXPECT_THAT(complete({"set", "IpNode", "publicIp"}), testing::IsEmpty()) << "it is only read";
    EXPECT_THAT(complete({"call", "IpNode", "mt"}), testing::IsEmpty()) << "call takes an operation's own name";
    EXPECT_THAT(complete({"get", "Nothing:x", ""}), testing::IsEmpty());
    EXPECT_THAT(complete({"completion", ""}), ElementsAre("bash", "zsh", "fish"));
    EXPECT_THAT(complete({"get", "EthIfNet:"}), testing::IsEmpty()) << "there is no unit";
    EXPECT_THAT(complete({"get", "Ip"}), ElementsAre("IpNode"));
    Unit sim = unit();
    EXPECT_THAT(complete({"get", "EthIfNet:"}), IsSupersetOf({"EthIfNet:IfNet/Transport", "EthIfNet:IfNet/Lmp"}));
    EXPECT_THAT(complete({"get", "EthIfNet:IfNet/Transport", "getVlanI"}), Contains("getVlanId"));
    EXPECT_THAT(complete({"--unit=unix:/nowhere", "get", "EthIfNet:"}), testing::IsEmpty());
    EXPECT_THAT(complete({"--format=json", "get", "EthIfNet:IfNet/L"}), ElementsAre("EthIfNet:IfNet/Lmp"));
}

TEST_F(TrsctlTable, BashCompletes)
{
    Unit sim = unit();
    std::string const programs = program("");
    auto const completed = [&](std::string const& line) {
        ChildProcess bash("/bin/bash", {"-c",
                                        "PATH=" + programs + ":$PATH TRS_UNIT=" + endpoint +
                                            "\nexport TRS_UNIT\n"
                                            "eval \"$(trsctl completion bash)\"\nCOMP_LINE=$1 COMP_POINT=${#1}\n"
                                            "_trsctl\nprintf '%s\\n' \"${COMPREPLY[@]}\"",
                                        "bash", line});
        EXPECT_EQ(bash.waitForExit(), 0);
        return bash.readRest();
    };
    EXPECT_THAT(completed("trsctl sna"), ElementsAre("snapshot"));
    EXPECT_THAT(completed("trsctl --format "), ElementsAre("text", "json", "table"));
    EXPECT_THAT(completed("trsctl get EthIfNet:IfNet/L"), ElementsAre("IfNet/Lmp"))
        << "bash has the part before the colon";
    EXPECT_THAT(completed("trsctl get EthIfNet:IfNet/Lmp getVlanI"), Contains("getVlanId"));
}

TEST_F(TrsctlTable, FishCompletes)
{
    ChildProcess fish("/usr/bin/env",
                      {"HOME=" + path + ".home", "PATH=" + program("") + ":/usr/bin:/bin", "fish", "--no-config", "-c",
                       "trsctl completion fish | source; cd /\n"
                       "for line in 'trsctl sna' 'trsctl --format ' 'trsctl get et' 'trsctl batch et'\n"
                       "complete -C $line\nend"});
    EXPECT_EQ(fish.waitForExit(), 0) << joined(fish.readRest(ChildProcess::Stream::error));
    EXPECT_THAT(fish.readRest(), ElementsAre("snapshot", "json", "table", "text", "etc/"))
        << "files only where a verb takes some";
    std::filesystem::remove_all(path + ".home");
}

TEST_F(TrsctlTable, ZshCompletes)
{
    ChildProcess zsh("/usr/bin/env",
                     {"PATH=" + program("") + ":/usr/bin:/bin", "zsh", "-f", "-c", R"zsh(zmodload zsh/zpty
zpty terminal zsh -f -i
until_shown() { zpty -r terminal shown "*$1*" && print -r -- "$1" }
zpty -w terminal 'autoload -U compinit; compinit -u -D; eval "$(trsctl completion zsh)"; print READ''Y'
until_shown READY
zpty -w -n terminal $'trsctl completion fi\t'
until_shown 'completion fish'
zpty -w -n terminal $'\C-utrsctl --format js\t list\t'
until_shown '--format json'
zpty -d terminal)zsh"});
    EXPECT_EQ(zsh.waitForExit(), 0) << joined(zsh.readRest(ChildProcess::Stream::error));
    EXPECT_THAT(zsh.readRest(), ElementsAre("READY", "completion fish", "--format json"));
}

} // namespace
