// trsctl get, set and call.
#include "catalogue/ConstantNames.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Confirmation.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

#include <fmt/format.h>
#include <memory>
#include <optional>

namespace trs::ctl {

namespace {

using catalogue::OperationKind;
using catalogue::Outcome;
using catalogue::Value;

// A verb, and what it takes.
struct CallVerb {
    char const* name;
    char const* help;
    char const* example;
    std::optional<OperationKind> kind; // of the operations that it takes by brief names too; else any one by its own
};

constexpr CallVerb callVerbs[] = {
    {"get", "Read something of an object", "get IpNode mtu", OperationKind::read},
    {"set", "Set something of an object", "set IpNode mtu 1400", OperationKind::write},
    {"call", "Call any operation", "call IpNode getIpConfig name=btsIpPrimary", std::nullopt},
};

struct CallWords {
    std::string object;
    std::string name;
    std::vector<std::string> arguments;
    bool isSure = false;
};

ExitCode carryOut(Target const& target, catalogue::Operation const& operation, CallWords const& words, Format format)
{
    std::vector<Value> values;
    if (ExitCode const code = readArguments(target, operation, words.arguments, values); code != ExitCode::good) {
        return code;
    }
    std::string const what = fmt::format("{} {} at {}", target.name.text(), operation.name, target.unit);
    if (destroys(*target.type, operation, values) && !isConfirmed(what, words.isSure)) {
        return complain("nothing is done");
    }
    TreflectHandlerState const running;
    Outcome outcome = callTarget(target, operation, values);
    if (outcome.kind != Outcome::Kind::refused && outcome.kind != Outcome::Kind::wrong) {
        noteLimits(operation, values);
    }
    if (outcome.kind != Outcome::Kind::done) {
        return complain(target, operation, outcome, values);
    }
    catalogue::nameConstants(*target.type, operation, outcome.results);
    writeResults(outcome.results, format);
    return ExitCode::good;
}

ExitCode callOne(CallVerb const& verb, CallWords const& words, Program::Options const& options)
{
    Target target;
    if (ExitCode const code = findTarget(options, words.object, target); code != ExitCode::good) {
        return code;
    }
    catalogue::Operation const* const operation =
        findOperation(target, words.name, verb.kind.value_or(OperationKind::execute));
    if (operation == nullptr) {
        return ExitCode::usage;
    }
    if (verb.kind && kindOf(*operation) != *verb.kind) {
        return complain(fmt::format("{} does not {} anything; `trsctl call` calls any operation", operation->name,
                                    *verb.kind == OperationKind::read ? "read" : "set"));
    }
    return carryOut(target, *operation, words, options.format);
}

} // namespace

void addCallVerbs(Program& program)
{
    for (CallVerb const& verb : callVerbs) {
        auto const words = std::make_shared<CallWords>();
        std::vector<tools::Option> options{
            Program::objectArgument(words->object),
            {.name = verb.kind ? "NAME" : "OPERATION",
             .target = &words->name,
             .help = verb.kind ? "What is read or set, or the operation's name" : "The operation's name",
             .isRequired = true},
            Program::valuesArgument(words->arguments)};
        if (verb.kind != OperationKind::read) {
            options.push_back(yesOption(words->isSure));
        }
        program.add({.name = verb.name, .help = verb.help, .example = verb.example, .options = std::move(options)},
                    [words, &verb](Program::Options const& shared) { return callOne(verb, *words, shared); });
    }
}

} // namespace trs::ctl
