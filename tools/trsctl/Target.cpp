#include "tools/trsctl/Target.h"

#include "broker/Broker.h"
#include "catalogue/Limits.h"
#include "catalogue/Text.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Nearest.h"
#include "tools/trsctl/Arguments.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"

#include <algorithm>
#include <fmt/format.h>
#include <thread>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::Type;
using catalogue::Value;

ExitCode complainOfArguments(catalogue::Operation const& operation, std::string const& wrong)
{
    return complain(wrong + '\n' + operation.signature());
}

// What a setter would have to be given for nothing to change; nothing where no operation tells that.
ExitCode readPresent(Target const& target, catalogue::Operation const& writer, std::vector<Value>& values)
{
    catalogue::Operation const* const reader = readerOf(*target.type, writer);
    if (reader == nullptr || !catalogue::typesOf(*reader, true).empty()) {
        return ExitCode::good;
    }
    TreflectHandlerState const running;
    catalogue::Outcome const outcome = catalogue::call(target.object, *reader, {});
    if (outcome.kind != catalogue::Outcome::Kind::done) {
        return complain(target, *reader, outcome);
    }
    for (Value const& each : outcome.results) {
        values.push_back(each);
    }
    return ExitCode::good;
}

} // namespace

Class const* findClass(std::string const& name)
{
    if (Class const* const exact = catalogue::findClass(name)) {
        return exact;
    }
    std::vector<Class const*> called;
    std::vector<std::string> names;
    for (Class const* const each : catalogue::classes()) {
        if (catalogue::isSameWord(each->name, name) || catalogue::isSameWord(each->interface, name)) {
            called.push_back(each);
        }
        names.emplace_back(name.ends_with("Client") ? each->name : each->interface);
    }
    if (called.size() == 1) {
        return called.front();
    }
    complain(fmt::format("'{}' is no class; `trsctl list` tells them{}", name, tools::didYouMean(name, names)));
    return nullptr;
}

ExitCode findTarget(Program::Options const& options, std::string const& text, Target& target)
{
    auto const known =
        std::ranges::find_if(catalogue::ObjectName::wellKnown(), [&text](catalogue::ObjectName const& each) {
            return catalogue::isSameWord(each.id, text);
        });
    bool const isWellKnown = known != catalogue::ObjectName::wellKnown().end();
    if (std::string const wrong = catalogue::ObjectName::parse(isWellKnown ? known->id : text, target.name);
        !wrong.empty()) {
        return complain(wrong);
    }
    target.type = findClass(target.name.className);
    if (target.type == nullptr) {
        return ExitCode::usage;
    }
    target.name.className = target.type->name;
    Broker::setDeadline(std::chrono::milliseconds(options.timeout));
    Broker& broker = Broker::instance();
    static std::string asked; // the unit of the last command line, when there are several
    if (asked != options.unit) {
        broker.removePeers();
        asked = options.unit;
    }
    if (std::string const wrong = tools::CommandLine::checkEndpoint(options.unit); !wrong.empty()) {
        return complain(wrong);
    }
    if (std::string const why = broker.addPeer(options.unit); !why.empty()) {
        return complain(why, ExitCode::unreachable);
    }
    target.unit = options.unit;
    target.object = TipprmiObjectClient(TipprmiOID(target.name.id));
    auto const end =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(static_cast<long>(options.wait * 1000));
    while (std::chrono::steady_clock::now() < end && !Interrupt::came() && !target.object.isConnected()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return ExitCode::good;
}

catalogue::Operation const* findOperation(Target const& target, std::string const& name, catalogue::OperationKind kind)
{
    return findOperation(*target.type, name, kind);
}

catalogue::Operation const* findOperation(Class const& type, std::string const& name, catalogue::OperationKind kind)
{
    catalogue::Operation const* const operation = catalogue::find(type, name, kind);
    if (operation == nullptr) {
        std::vector<std::string> names;
        for (catalogue::Operation const* const each : type.operations()) {
            names.emplace_back(each->name);
            if (kindOf(*each) == kind) {
                names.push_back(briefNameOf(*each));
            }
        }
        complain(fmt::format("'{}' is no operation of {}; `trsctl list {}` tells them{}", name, type.name, type.name,
                             tools::didYouMean(name, names)));
    }
    return operation;
}

ExitCode readArguments(Target const& target, catalogue::Operation const& operation,
                       std::vector<std::string> const& words, std::vector<Value>& values)
{
    Arguments arguments(operation);
    std::string wrong;
    for (auto word = words.begin(); word != words.end() && wrong.empty(); ++word) {
        wrong = arguments.take(*word);
    }
    std::vector<Value> now;
    if (wrong.empty() && arguments.hasParts()) {
        if (ExitCode const code = readPresent(target, operation, now); code != ExitCode::good) {
            return code;
        }
    }
    wrong = wrong.empty() ? arguments.read(*target.type, now, values) : wrong;
    return wrong.empty() ? ExitCode::good : complainOfArguments(operation, wrong);
}

catalogue::Outcome callTarget(Target const& target, catalogue::Operation const& operation, std::vector<Value> const& in)
{
    catalogue::Outcome outcome = catalogue::call(target.object, operation, in);
    bool const saysNo = outcome.kind == catalogue::Outcome::Kind::done && operation.result != nullptr &&
                        operation.result->kind == Type::Kind::boolean && outcome.results["result"] == false &&
                        kindOf(operation) != catalogue::OperationKind::read;
    outcome.kind = saysNo ? catalogue::Outcome::Kind::refused : outcome.kind;
    return outcome;
}

std::string whyNoResults(catalogue::Operation const& operation, catalogue::Outcome const& outcome,
                         std::vector<Value> const& in)
{
    if (outcome.kind != catalogue::Outcome::Kind::refused) {
        return outcome.failure.reason + "; " + outcome.failure.effect();
    }
    std::string text = "refused by the unit";
    text += outcome.subSystem == 0 ? "" : fmt::format(", subsystem {}", outcome.subSystem);
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (operation.parameters[i].isIn || operation.parameters[i].type->kind != Type::Kind::text) {
            continue;
        }
        auto const told = outcome.results[std::string(operation.parameterNames()[i])].get<std::string>();
        text += told.empty() ? "" : ": " + told;
    }
    for (catalogue::Violation const& violation : catalogue::violations(operation, in)) {
        text += "; " + violation.text();
    }
    return text + (kindOf(operation) == catalogue::OperationKind::read ? "" : "; nothing is known to have changed");
}

ExitCode complain(Target const& target, catalogue::Operation const& operation, catalogue::Outcome const& outcome,
                  std::vector<Value> const& in)
{
    if (outcome.kind == catalogue::Outcome::Kind::wrong) {
        return complainOfArguments(operation, outcome.wrong);
    }
    std::string const what = fmt::format("{} {} at {}: {}", target.name.text(), operation.name, target.unit,
                                         whyNoResults(operation, outcome, in));
    return outcome.kind == catalogue::Outcome::Kind::refused ? complain(what, ExitCode::refused, "unknown")
                                                             : complain(what, outcome.failure);
}

void noteLimits(catalogue::Operation const& operation, std::vector<Value> const& in)
{
    for (catalogue::Violation const& violation : catalogue::violations(operation, in)) {
        note(violation.text());
    }
}

Identification::Identification(Class const& type)
{
    for (Class const* each = &type; each != nullptr && judge_ == 0; each = each->base()) {
        unanswered_ = static_cast<std::size_t>(std::ranges::count_if(each->own, catalogue::isPlainRead));
        judge_ = unanswered_ > 0 ? each->id : 0;
    }
}

void Identification::add(catalogue::Operation const& operation, catalogue::Outcome const& outcome)
{
    bool const isFailed = outcome.kind == catalogue::Outcome::Kind::failed;
    bool const isMissing = isFailed && outcome.failure.kind == CallFailure::Kind::noSuchObject;
    bool const hasNot = isFailed && outcome.failure.kind == CallFailure::Kind::noSuchOperation;
    unanswered_ -= operation.classId == judge_ && hasNot ? 1 : 0;
    if (failed_ == nullptr && (isMissing || (operation.classId == judge_ && unanswered_ == 0))) {
        failed_ = &operation;
        outcome_ = outcome;
    }
}

} // namespace trs::ctl
