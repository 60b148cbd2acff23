// trsctl get, set, call and walk.
#include "tools/trsctl/Program.h"
#include "tools/trsctl/Verbs.h"

#include <memory>

namespace trs::ctl {

namespace {

struct CallWords {
    std::string object;
    std::string name;
    std::vector<std::string> arguments;
};

using Call = ExitCode (Unit::*)(std::string const& object, std::string const& name,
                                std::vector<std::string> const& arguments);

void addCallVerb(Program& program, char const* verb, char const* help, char const* example, Call call)
{
    auto const words = std::make_shared<CallWords>();
    bool const isCall = call == &Unit::call;
    program.add({.name = verb,
                 .help = help,
                 .example = example,
                 .options =
                     {
                         Program::objectArgument(words->object),
                         {.name = isCall ? "OPERATION" : "NAME",
                          .target = &words->name,
                          .help = isCall ? "The operation's name" : "What is read or set, or the operation's name",
                          .isRequired = true},
                         Program::valuesArgument(words->arguments),
                     }},
                [words, call](Program::Options const& options) {
                    Unit unit = options.unitOf();
                    return (unit.*call)(words->object, words->name, words->arguments);
                });
}

} // namespace

void addCallVerbs(Program& program)
{
    addCallVerb(program, "get", "Read something of an object", "get IpNode mtu", &Unit::get);
    addCallVerb(program, "set", "Set something of an object", "set IpNode mtu 1400", &Unit::set);
    addCallVerb(program, "call", "Call any operation", "call IpNode getIpConfig name=btsIpPrimary", &Unit::call);
    auto const object = std::make_shared<std::string>();
    program.add({.name = "walk",
                 .help = "Read all that an object tells",
                 .example = "walk EthIfNet:IfNet/Transport",
                 .options = {Program::objectArgument(*object)}},
                [object](Program::Options const& options) { return options.unitOf().walk(*object); });
}

} // namespace trs::ctl
