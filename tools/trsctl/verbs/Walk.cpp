// trsctl walk: all that an object tells.
#include "catalogue/ConstantNames.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

#include <memory>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;

ExitCode walk(Program::Options const& options, std::string const& object)
{
    Target target;
    if (ExitCode const code = findTarget(options, object, target); code != ExitCode::good) {
        return code;
    }
    TreflectHandlerState const running;
    Value results = Value::object();
    std::vector<catalogue::Operation const*> operations = target.type->operations();
    std::erase_if(operations, [](catalogue::Operation const* each) { return !isPlainRead(*each); });
    tools::Progress progress("operations");
    Identification identification(*target.type);
    for (catalogue::Operation const* const operation : operations) {
        progress.show(results.size(), operations.size());
        Outcome outcome = catalogue::call(target.object, *operation, {});
        identification.add(*operation, outcome);
        bool const isEnd = outcome.kind == Outcome::Kind::failed &&
                           outcome.failure.kind != CallFailure::Kind::noSuchOperation &&
                           outcome.failure.kind != CallFailure::Kind::refused;
        if (isEnd) {
            progress.clear();
            return complain(target, *operation, outcome);
        }
        catalogue::nameConstants(*target.type, *operation, outcome.results);
        results[std::string(operation->name)] =
            outcome.kind == Outcome::Kind::done ? outcome.results : Value{{"error", whyNoResults(*operation, outcome)}};
    }
    progress.clear();
    if (identification.failed() != nullptr) {
        return complain(target, *identification.failed(), identification.outcome());
    }
    writeResults(results, options.format);
    return ExitCode::good;
}

} // namespace

void addWalkVerbs(Program& program)
{
    auto const object = std::make_shared<std::string>();
    program.add({.name = "walk",
                 .help = "Read all that an object tells",
                 .example = "walk EthIfNet:IfNet/Transport",
                 .options = {Program::objectArgument(*object)}},
                [object](Program::Options const& options) { return walk(options, *object); });
}

} // namespace trs::ctl
