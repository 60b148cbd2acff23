#include "tools/trsctl/Target.h"

#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Limits.h"
#include "catalogue/ValueText.h"
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
        complain("note: " + violation.text());
    }
    return {};
}

ExitCode complainOfArguments(catalogue::Operation const& operation, std::string const& wrong)
{
    return complain(wrong + '\n' + operation.signature());
}

} // namespace

ExitCode findTarget(Program::Options const& options, std::string const& text, Target& target)
{
    if (std::string const wrong = catalogue::ObjectName::parse(text, target.name); !wrong.empty()) {
        return complain(wrong);
    }
    target.type = catalogue::findClass(target.name.className);
    if (target.type == nullptr) {
        return complain(fmt::format("'{}' is no class; `trsctl list` tells them", printable(target.name.className)));
    }
    Broker::setDeadline(std::chrono::milliseconds(options.timeout));
    Broker& broker = Broker::instance();
    static std::string asked; // the unit of the last command line, when there are several
    if (asked != options.unit) {
        broker.removePeers();
        asked = options.unit;
    }
    if (std::string const why = broker.addPeer(options.unit); !why.empty()) {
        return complain(why);
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
        complain(fmt::format("'{}' is no operation of {}; `trsctl list {}` tells them", printable(name), type.name,
                             type.name));
    }
    return operation;
}

ExitCode readArguments(Target const& target, catalogue::Operation const& operation,
                       std::vector<std::string> const& words, std::vector<Value>& values)
{
    std::string const wrong = parseArguments(*target.type, operation, words, values);
    return wrong.empty() ? ExitCode::good : complainOfArguments(operation, wrong);
}

std::string whyNoResults(catalogue::Operation const& operation, catalogue::Outcome const& outcome)
{
    if (outcome.kind == catalogue::Outcome::Kind::refused) {
        std::string text =
            outcome.subSystem == 0 ? "refused" : fmt::format("refused by subsystem {}", outcome.subSystem);
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

ExitCode complain(Target const& target, catalogue::Operation const& operation, catalogue::Outcome const& outcome)
{
    if (outcome.kind == catalogue::Outcome::Kind::wrong) {
        return complainOfArguments(operation, outcome.wrong);
    }
    return complain(fmt::format("{} {} at {}: {}", target.name.text(), operation.name, target.unit,
                                escaped(whyNoResults(operation, outcome))),
                    outcome.kind == catalogue::Outcome::Kind::refused ? ExitCode::refused
                                                                      : exitCodeOf(outcome.failure));
}

} // namespace trs::ctl
