#include "tools/trsctl/Program.h"

#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <utility>

namespace trs::ctl {

namespace {

constexpr char const* description =
    "Shows what interfaces a unit's objects have, reads and sets what they keep, and calls any of their operations.\n"
    "An OBJECT is Class:identifier, or a well-known identifier alone: IpNode, NmiRmiAdapterServer.";

constexpr char const* exitCodes =
    "0 done, 1 a difference was found or output was lost, 2 wrong usage, 3 no such object, 4 refused by the unit,\n"
    "5 no reply in time, 6 unit not reached or lost, 7 malformed reply, 8 no such operation there,\n"
    "9 unit has no thread left for the call.";

void addOptions(tools::CommandLine& line, Program::Options& options)
{
    line.add(tools::CommandLine::unitOption(options.unit));
    line.add(tools::CommandLine::timeoutOption(options.timeout));
    line.add({.name = "--wait",
              .target = &options.wait,
              .help = "How long to wait for the object to be there, in seconds",
              .type = "S",
              .range = {{0, 3600}}});
    line.add(tools::choice<Format>("--format", "How results are written", formatNames(),
                                   [&options](Format chosen) { options.format = chosen; }));
    line.add(tools::choice<tools::UseOfColour>(
        "--color", "Whether results are coloured; auto: on a terminal, unless NO_COLOR is set",
        {{"auto", tools::UseOfColour::whereItIsSeen},
         {"always", tools::UseOfColour::always},
         {"never", tools::UseOfColour::never}},
        [&options](tools::UseOfColour chosen) { options.colour = chosen; }));
    line.table().exitCodes = exitCodes;
    line.table().needsVerb = true;
}

} // namespace

Program::Program(Options defaults) : options_(std::move(defaults)), line_("trsctl", description, 0)
{
    addOptions(line_, options_);
#define VERBS_OF(Name) add##Name##Verbs(*this);
#include "tools/trsctl/Verbs.inc"
#undef VERBS_OF
    std::ranges::sort(line_.table().verbs, {}, &tools::Verb::name);
    line_.addCommonOptions();
}

void Program::add(tools::Verb verb, Action action)
{
    verb.chosen = [this, action = std::move(action)] { action_ = action; };
    line_.table().verbs.push_back(std::move(verb));
}

tools::Option Program::objectArgument(std::string& object, bool isRequired)
{
    return {.name = "OBJECT",
            .target = &object,
            .help = "Class:identifier, or a well-known identifier",
            .isRequired = isRequired};
}

tools::Option Program::valuesArgument(std::vector<std::string>& values)
{
    return {.name = "VALUE",
            .target = &values,
            .help = "NAME=VALUE, or VALUE in the order of the signature; JSON or @FILE for records"};
}

int Program::run(std::vector<std::string> words)
{
    if (std::optional<int> const code = line_.parse(std::move(words))) {
        return *code;
    }
    tools::setUseOfColour(options_.colour);
    return static_cast<int>(action_(options_));
}

} // namespace trs::ctl
