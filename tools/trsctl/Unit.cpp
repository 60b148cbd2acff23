#include "tools/trsctl/Unit.h"

#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Limits.h"
#include "catalogue/ValueText.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Interrupt.h"

#include <algorithm>
#include <cstdio>
#include <thread>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::OperationKind;
using catalogue::Outcome;
using catalogue::Type;
using catalogue::Value;

// The values of the in-parameters from "NAME=VALUE" and plain "VALUE" arguments. Empty, or what is wrong.
std::string parseArguments(Class const& type, catalogue::Operation const& operation,
                           std::vector<std::string> const& arguments, std::vector<Value>& values)
{
    std::vector<std::string_view> const names = operation.parameterNames();
    std::vector<std::string> texts(operation.parameters.size());
    std::vector<bool> isGiven(operation.parameters.size());
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        isGiven[i] = !operation.parameters[i].isIn; // not to be given
    }
    for (std::string const& argument : arguments) {
        std::size_t const sign = argument.find('=');
        auto const named = std::find(names.begin(), names.end(), std::string_view(argument).substr(0, sign));
        bool const isNamed = sign != std::string::npos && named != names.end();
        auto const place =
            isNamed ? static_cast<std::size_t>(named - names.begin())
                    : static_cast<std::size_t>(std::find(isGiven.begin(), isGiven.end(), false) - isGiven.begin());
        if (place >= isGiven.size()) {
            return '\'' + printable(argument) + "' is one argument too many";
        }
        if (isGiven[place]) {
            return '\'' + printable(argument) + "' is given twice, or is not to be given";
        }
        texts[place] = isNamed ? argument.substr(sign + 1) : argument;
        isGiven[place] = true;
    }
    for (std::size_t i = 0; i < isGiven.size(); ++i) {
        if (!isGiven[i]) {
            return std::string(names[i]) + " is missing";
        }
        if (operation.parameters[i].isIn) {
            Type const& parameter = *operation.parameters[i].type;
            std::string wrong = catalogue::parseValue(parameter, texts[i], values.emplace_back());
            wrong = wrong.empty() ? catalogue::resolveConstants(type, operation, parameter, values.back()) : wrong;
            if (!wrong.empty()) {
                return std::string(names[i]) + ": " + wrong;
            }
        }
    }
    for (catalogue::Violation const& violation : catalogue::violations(operation, values)) {
        std::fprintf(stderr, "note: %s\n", violation.text().c_str());
    }
    return {};
}

ExitCode complainOfArguments(catalogue::Operation const& operation, std::string const& wrong)
{
    std::fprintf(stderr, "%s\n%s\n", wrong.c_str(), operation.signature().c_str());
    return ExitCode::usage;
}

} // namespace

ExitCode Unit::connect(std::string const& text, Target& target) const
{
    if (std::string const wrong = catalogue::ObjectName::parse(text, target.name); !wrong.empty()) {
        std::fprintf(stderr, "%s\n", wrong.c_str());
        return ExitCode::usage;
    }
    target.type = catalogue::findClass(target.name.className);
    if (target.type == nullptr) {
        std::fprintf(stderr, "'%s' is no class; `trsctl list` tells them\n", printable(target.name.className).c_str());
        return ExitCode::usage;
    }
    Broker::setDeadline(options_.timeout);
    Broker& broker = Broker::instance();
    static std::string asked; // the unit of the last command line, when there are several
    if (asked != options_.endpoint) {
        broker.removePeers();
        asked = options_.endpoint;
    }
    if (std::string const why = broker.addPeer(options_.endpoint); !why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return ExitCode::usage;
    }
    target.object = TipprmiObjectClient(TipprmiOID(target.name.id));
    auto const end = std::chrono::steady_clock::now() + options_.wait;
    while (std::chrono::steady_clock::now() < end && !Interrupt::came() && !target.object.isConnected()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return ExitCode::good;
}

std::string Unit::describe(catalogue::Operation const& operation, Outcome const& outcome)
{
    if (outcome.kind == Outcome::Kind::refused) {
        std::string text = "refused";
        text += outcome.subSystem == 0 ? "" : " by subsystem " + std::to_string(outcome.subSystem);
        for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
            if (operation.parameters[i].isIn || operation.parameters[i].type->kind != Type::Kind::text) {
                continue;
            }
            auto const told = outcome.results[std::string(operation.parameterNames()[i])].get<std::string>();
            text += told.empty() ? "" : ": " + told;
        }
        return text + "; it was carried out";
    }
    return outcome.failure.reason + "; " + outcome.failure.effect();
}

// Says why a call has no results.
ExitCode Unit::complain(Target const& target, catalogue::Operation const& operation, Outcome const& outcome) const
{
    if (outcome.kind == Outcome::Kind::wrong) {
        return complainOfArguments(operation, outcome.wrong);
    }
    std::fprintf(stderr, "%s %s at %s: %s\n", target.name.text().c_str(), std::string(operation.name).c_str(),
                 options_.endpoint.c_str(), escaped(describe(operation, outcome)).c_str());
    return outcome.kind == Outcome::Kind::refused ? ExitCode::refused : exitCodeOf(outcome.failure);
}

ExitCode Unit::readArguments(Target const& target, catalogue::Operation const& operation,
                             std::vector<std::string> const& words, std::vector<Value>& values)
{
    std::string const wrong = parseArguments(*target.type, operation, words, values);
    return wrong.empty() ? ExitCode::good : complainOfArguments(operation, wrong);
}

ExitCode Unit::carryOut(Target const& target, catalogue::Operation const& operation,
                        std::vector<std::string> const& arguments)
{
    std::vector<Value> values;
    if (ExitCode const code = readArguments(target, operation, arguments, values); code != ExitCode::good) {
        return code;
    }
    TreflectHandlerState const running;
    Outcome outcome = catalogue::call(target.object, operation, values);
    if (outcome.kind != Outcome::Kind::done) {
        return complain(target, operation, outcome);
    }
    catalogue::nameConstants(operation, outcome.results);
    writeResults(outcome.results, options_.format);
    return ExitCode::good;
}

catalogue::Operation const* Unit::findOperation(Target const& target, std::string const& name, OperationKind kind)
{
    catalogue::Operation const* const operation = catalogue::find(*target.type, name, kind);
    if (operation == nullptr) {
        std::string const type(target.type->name);
        std::fprintf(stderr, "'%s' is no operation of %s; `trsctl list %s` tells them\n", printable(name).c_str(),
                     type.c_str(), type.c_str());
    }
    return operation;
}

ExitCode Unit::callOne(std::string const& object, std::string const& name, std::optional<OperationKind> kind,
                       std::vector<std::string> const& arguments)
{
    Target target;
    if (ExitCode const code = connect(object, target); code != ExitCode::good) {
        return code;
    }
    catalogue::Operation const* const operation = findOperation(target, name, kind.value_or(OperationKind::execute));
    if (operation == nullptr) {
        return ExitCode::usage;
    }
    if (kind && kindOf(*operation) != *kind) {
        std::fprintf(stderr, "%s does not %s anything; `trsctl call` calls any operation\n",
                     std::string(operation->name).c_str(), *kind == OperationKind::read ? "read" : "set");
        return ExitCode::usage;
    }
    return carryOut(target, *operation, arguments);
}

ExitCode Unit::get(std::string const& object, std::string const& name, std::vector<std::string> const& arguments)
{
    return callOne(object, name, OperationKind::read, arguments);
}

ExitCode Unit::set(std::string const& object, std::string const& name, std::vector<std::string> const& arguments)
{
    return callOne(object, name, OperationKind::write, arguments);
}

ExitCode Unit::call(std::string const& object, std::string const& name, std::vector<std::string> const& arguments)
{
    return callOne(object, name, std::nullopt, arguments);
}

ExitCode Unit::walk(std::string const& object)
{
    Target target;
    if (ExitCode const code = connect(object, target); code != ExitCode::good) {
        return code;
    }
    TreflectHandlerState const running;
    Value results = Value::object();
    std::vector<catalogue::Operation const*> operations = target.type->operations();
    std::erase_if(operations, [](catalogue::Operation const* each) { return !isPlainRead(*each); });
    tools::Progress progress("operations");
    for (catalogue::Operation const* const operation : operations) {
        progress.show(results.size(), operations.size());
        Outcome outcome = catalogue::call(target.object, *operation, {});
        bool const isEnd = outcome.kind == Outcome::Kind::failed &&
                           outcome.failure.kind != CallFailure::Kind::noSuchOperation &&
                           outcome.failure.kind != CallFailure::Kind::refused;
        if (isEnd) {
            progress.clear();
            return complain(target, *operation, outcome);
        }
        catalogue::nameConstants(*operation, outcome.results);
        results[std::string(operation->name)] =
            outcome.kind == Outcome::Kind::done ? outcome.results : Value{{"error", describe(*operation, outcome)}};
    }
    progress.clear();
    writeResults(results, options_.format);
    return ExitCode::good;
}

} // namespace trs::ctl
