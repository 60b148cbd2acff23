#include "tools/trsctl/Change.h"

#include "catalogue/References.h"
#include "catalogue/Walk.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/UnitDocument.h"

#include <algorithm>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::Operation;
using catalogue::Outcome;
using catalogue::Value;

constexpr int mostPasses = 4; // objects in objects that are made are rarely deeper

// Adds the keys of the entries that an object's part of a document has for a read that takes them.
void addKeys(Value const& told, Class const& type, Operation const& operation, std::string const& key,
             std::vector<Value>& keys)
{
    for (auto const& [name, entries] : told.items()) {
        if (!entries.is_array() || catalogue::find(type, name, catalogue::OperationKind::read) != &operation) {
            continue;
        }
        for (Value const& entry : entries) {
            if (entry.is_object() && entry.contains(key)) {
                keys.push_back(entry[key]);
            }
        }
    }
}

// The keys that a document has entries for.
MoreKeys keysOfDocument(Value const& document)
{
    return [&document](catalogue::Walk::Object const& object, Operation const& operation) {
        std::vector<Value> keys;
        if (!document.is_object() || !document.contains("objects")) {
            return keys;
        }
        std::vector<std::string_view> const names = operation.parameterNames();
        auto const in = std::ranges::find(operation.parameters, true, &catalogue::Parameter::isIn);
        std::string const key(names[static_cast<std::size_t>(in - operation.parameters.begin())]);
        for (auto const& [text, told] : document["objects"].items()) {
            bool const isMeant = text == object.name.id || text.ends_with(':' + object.name.id);
            if (isMeant && told.is_object()) {
                addKeys(told, *object.type, operation, key, keys);
            }
        }
        return keys;
    };
}

// Has references lead to the object that is there instead of the one that was wanted.
void replaceReferences(Value& value, std::string const& wanted, std::string const& actual)
{
    if (value.is_structured()) {
        for (Value& each : value) {
            replaceReferences(each, wanted, actual);
        }
    } else if (value.is_string()) {
        auto const& text = value.get_ref<std::string const&>();
        std::size_t const at = text.find(':' + wanted);
        std::size_t const end = at + 1 + wanted.size();
        if (at != std::string::npos && (end == text.size() || text[end] == '/')) {
            value = text.substr(0, at + 1) + actual + text.substr(end);
        }
    }
}

Target targetOf(Program::Options const& options, Step const& step)
{
    return {options.unit, step.object, step.type, TipprmiObjectClient(TipprmiOID(step.object.id))};
}

} // namespace

ExitCode Change::readNow(Value& told)
{
    ExitCode const code = readUnit(options_, "", told, keysOfDocument(document_));
    if (code == ExitCode::good) {
        now_ = readTold(told);
    }
    return code;
}

ExitCode Change::read()
{
    if (ExitCode const code = readNow(before_); code != ExitCode::good) {
        return code;
    }
    if (std::string const wrong = readWanted(document_, now_, wanted_); !wrong.empty()) {
        return complain(wrong);
    }
    plan_ = makePlan(wanted_, now_);
    return ExitCode::good;
}

// An object that was made may be called otherwise than was wanted.
void Change::adopt(std::string const& wantedId, Outcome const& outcome, Operation const& operation)
{
    std::vector<std::string> const made = catalogue::referencesIn(operation, outcome.results);
    catalogue::ObjectName name;
    if (made.empty() || !catalogue::ObjectName::parse(made.front(), name).empty() || name.id == wantedId) {
        return;
    }
    note(wantedId + " is " + name.id + " now");
    std::map<std::string, UnitState::Object> objects;
    for (auto& [id, object] : wanted_.objects) {
        if (id == wantedId || id.starts_with(wantedId + '/')) {
            object.name.id = name.id + id.substr(wantedId.size());
        }
        for (UnitState::Reading& reading : object.readings) {
            replaceReferences(reading.told, wantedId, name.id);
        }
        std::string const key = object.name.id;
        objects.emplace(key, std::move(object));
    }
    wanted_.objects = std::move(objects);
}

// In their order, those that are refused again behind the others, as long as that helps.
ExitCode Change::doSteps(std::vector<Step> steps, Tell const& tell)
{
    std::vector<Outcome> refusals; // of the steps that are left
    for (bool isHelping = true; isHelping && !steps.empty();) {
        std::vector<Step> refused;
        refusals.clear();
        isHelping = false;
        for (Step& step : steps) {
            if (Interrupt::came() && !takesBack_) {
                return complain("interrupted", ExitCode::unreachable);
            }
            Target const target = targetOf(options_, step);
            TreflectHandlerState const running;
            Outcome outcome = callTarget(target, *step.operation, step.arguments());
            if (outcome.kind == Outcome::Kind::done) {
                isHelping = true;
                hasDone_ = true;
                if (!step.creates.empty()) {
                    adopt(step.creates, outcome, *step.operation);
                }
                tell(step);
            } else if (outcome.kind == Outcome::Kind::refused || (takesBack_ && !isUnitLost(outcome))) {
                refused.push_back(std::move(step));
                refusals.push_back(std::move(outcome));
            } else {
                return complain(target, *step.operation, outcome);
            }
        }
        steps = std::move(refused);
    }
    ExitCode code = ExitCode::good;
    for (std::size_t i = 0; i < steps.size(); ++i) { // which nothing helped
        code = complain(targetOf(options_, steps[i]), *steps[i].operation, refusals[i], steps[i].in);
    }
    return takesBack_ ? ExitCode::good : code;
}

ExitCode Change::carryOut(Tell const& tell)
{
    std::set<std::string> done;
    for (int pass = 0; pass < mostPasses; ++pass) {
        std::vector<Step> steps = plan_.steps;
        std::erase_if(steps, [&done](Step const& each) { return !done.insert(each.text()).second; });
        if (steps.empty()) {
            break;
        }
        if (ExitCode const code = doSteps(std::move(steps), tell); code != ExitCode::good) {
            return code;
        }
        Value told;
        if (ExitCode const code = readNow(told); code != ExitCode::good) {
            return code;
        }
        plan_ = makePlan(wanted_, now_);
    }
    left_ = plan_.facts;
    for (Step const& each : plan_.steps) { // accepted, and told otherwise
        left_.push_back({each.text(), true, nullptr});
    }
    return ExitCode::good;
}

ExitCode Change::takeBack(Program::Options const& options, Value const& before, Tell const& tell)
{
    Change back(options, before);
    back.takesBack_ = true;
    ExitCode const code = back.read();
    return code == ExitCode::good ? back.carryOut(tell) : code;
}

} // namespace trs::ctl
