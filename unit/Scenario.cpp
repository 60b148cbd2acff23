#include "unit/Scenario.h"

#include "broker/PrintableText.h"
#include "broker/ServerTap.h"
#include "catalogue/Call.h"
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "catalogue/Text.h"
#include "unit/Inventory.h"
#include "unit/Managed.h"
#include "unit/Unit.h"

#include <algorithm>
#include <cstdint>
#include <map>

namespace trs::sim::scenario {

namespace {

using catalogue::Class;
using catalogue::ObjectName;
using catalogue::Operation;
using catalogue::OperationKind;
using catalogue::Outcome;
using catalogue::Type;
using catalogue::Value;
using Values = Properties::Values;

// What operations tell that say something by two others.
struct Switch {
    std::string_view className;
    std::string_view reader;
    std::string_view on;
    std::string_view off;
};
constexpr Switch switches[] = {{"ConditionClient", "isActive", "raise", "cancel"},
                               {"ConditionClient", "isSuppressed", "suppress", "unsuppress"}};

// What follows from the time alone.
constexpr std::string_view elapsedTime = "getElapsedTime";

constexpr unsigned long lastSecond = UINT32_MAX; // of the time, as it travels

constexpr std::string_view performance = "PerformanceServiceClient";
constexpr std::string_view adapterData = "getAdapterData";

std::string inQuotes(std::string const& text) { return '\'' + printable(text) + '\''; }

// The unit's own call, which meets no fault.
Outcome call(std::string const& id, Operation const& operation, Values const& arguments)
{
    UntappedCalls const own;
    return catalogue::call(TipprmiObjectClient(TipprmiOID(id)), operation, arguments);
}

// The arguments by name.
Value named(Operation const& operation, Values const& arguments)
{
    Value all = Value::object();
    std::vector<std::string_view> const names = operation.parameterNames();
    std::size_t place = 0;
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (operation.parameters[i].isIn && place < arguments.size()) {
            all[std::string(names[i])] = arguments[place++];
        }
    }
    return all;
}

// Those subjects that anything was counted for, or that are not monitored: the others are as they are at first.
std::vector<Values> countedSubjects(Inventory::Entry const& entry)
{
    Value ids = Value::array();
    Outcome const all = call(entry.id, *entry.type->find(adapterData), {{1, 2, 3}});
    for (Value const& record : all.results["data"]) {
        if (record["flag"] != true || record["value2"] != 0 || record["value3"] != 0) {
            ids.push_back(record["value1"]);
        }
    }
    return ids.empty() ? std::vector<Values>() : std::vector<Values>{{ids}};
}

// What an operation tells for each of these arguments.
Value toldFor(Inventory::Entry const& entry, Operation const& operation, std::vector<Values> const& keys)
{
    Value list = Value::array();
    for (Values const& arguments : keys) {
        Outcome const outcome = call(entry.id, operation, arguments);
        if (outcome.kind == Outcome::Kind::done) {
            Value element = named(operation, arguments);
            element.update(outcome.results);
            list.push_back(std::move(element));
        }
    }
    return list;
}

Value save(Inventory::Entry const& entry)
{
    Value object = Value::object();
    for (Operation const* const operation : entry.type->operations()) {
        if (isPlainRead(*operation) && operation->name != elapsedTime) {
            Outcome const outcome = call(entry.id, *operation, {});
            if (outcome.kind == Outcome::Kind::done) {
                object[std::string(operation->name)] = outcome.results;
            }
        }
    }
    std::map<std::string, std::vector<Values>> keys;
    if (entry.type->name == performance) {
        keys[std::string(adapterData)] = countedSubjects(entry);
    }
    if (entry.managed != nullptr) {
        for (auto const& [name, keysOf] : entry.managed->keys()) {
            keys[name] = keysOf.all();
        }
        for (Properties::Kept const& kept : entry.managed->properties().all()) {
            if (!kept.arguments.empty()) {
                keys[std::string(kept.operation->name)].push_back(kept.arguments);
            } else if (kindOf(*kept.operation) != OperationKind::read) {
                object[std::string(kept.operation->name)] = kept.told;
            }
        }
    }
    for (auto const& [name, arguments] : keys) {
        if (!arguments.empty()) {
            object[name] = toldFor(entry, *entry.type->find(name), arguments);
        }
    }
    return object;
}

// Applies what a document says of one object.
class Applier {
public:
    Applier(Inventory::Entry const& entry, Value const& told) : entry_(entry), told_(told) {}

    // Sets what can be set. Empty, or what is wrong.
    std::string set() const
    {
        return forEach([this](Operation const& operation, Values const& arguments, Value const& results) {
            change(operation, arguments, results);
            return std::string();
        });
    }
    // Makes the object tell what it does not tell by itself. Empty, or what it cannot be made to tell.
    std::string force() const
    {
        return forEach([this](Operation const& operation, Values const& arguments, Value const& results) {
            if (tells(operation, arguments, results)) {
                return std::string();
            }
            if (entry_.managed == nullptr || !arguments.empty()) {
                return operationText(operation) + " cannot be made to tell " + catalogue::toJson(results, -1);
            }
            std::string const wrong = entry_.managed->force(operation, results);
            return wrong.empty() ? wrong : operationText(operation) + ": " + wrong;
        });
    }

private:
    using Visitor = std::function<std::string(Operation const&, Values const& arguments, Value const& results)>;

    std::string operationText(Operation const& operation) const
    {
        return ObjectName{std::string(entry_.type->name), entry_.id}.text() + ' ' + std::string(operation.name);
    }

    std::string forEach(Visitor const& visit) const
    {
        if (!told_.is_object()) {
            return inQuotes(entry_.id) + " is not described by a JSON object";
        }
        for (auto const& [name, told] : told_.items()) {
            Operation const* const operation = entry_.type->find(name);
            if (operation == nullptr) {
                return inQuotes(name) + " is no operation of " + std::string(entry_.type->name);
            }
            std::string wrong;
            if (kindOf(*operation) != OperationKind::read) {
                wrong = keep(*operation, told);
            } else if (typesOf(*operation, true).empty()) {
                wrong = visit(*operation, {}, told);
            } else {
                for (Value const& element : told) {
                    Values arguments;
                    Value results = element;
                    wrong = wrong.empty() ? split(*operation, results, arguments) : wrong;
                    wrong = wrong.empty() ? visit(*operation, arguments, results) : wrong;
                }
            }
            if (!wrong.empty()) {
                return wrong;
            }
        }
        return {};
    }

    // What an operation that no other reads was given.
    std::string keep(Operation const& operation, Value const& told) const
    {
        bool const isKept = entry_.managed != nullptr && ruleOf(operation) != nullptr && told.is_array() &&
                            told.size() == 1 && entry_.managed->properties().keep({&operation, {}, {told[0]}});
        return isKept ? "" : operationText(operation) + " reads nothing";
    }

    // Moves the in-arguments out of the results.
    std::string split(Operation const& operation, Value& results, Values& arguments) const
    {
        std::vector<std::string_view> const names = operation.parameterNames();
        for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
            if (!operation.parameters[i].isIn) {
                continue;
            }
            std::string const name(names[i]);
            if (!results.is_object() || !results.contains(name)) {
                return operationText(operation) + ": " + name + " is missing";
            }
            arguments.push_back(results[name]);
            results.erase(name);
        }
        return {};
    }

    bool tells(Operation const& operation, Values const& arguments, Value const& results) const
    {
        Outcome const outcome = call(entry_.id, operation, arguments);
        return outcome.kind == Outcome::Kind::done && outcome.results == results;
    }

    void change(Operation const& operation, Values const& arguments, Value const& results) const
    {
        if (tells(operation, arguments, results) || !results.is_object()) {
            return;
        }
        auto const* const found = std::ranges::find_if(switches, [&operation](Switch const& each) {
            return each.className == operation.className && each.reader == operation.name;
        });
        if (found != std::end(switches) && results.contains("result")) {
            call(entry_.id, *entry_.type->find(results["result"] == true ? found->on : found->off), {});
            return;
        }
        Values told;
        for (Value const& value : results) {
            told.push_back(value);
        }
        if (Operation const* const setter = writerOf(*entry_.type, operation)) {
            Values all = arguments;
            all.insert(all.end(), told.begin(), told.end());
            call(entry_.id, *setter, all);
        } else if (Operation const* const whole = setterOfOutArguments(operation)) {
            told.erase(told.begin(), told.end() - static_cast<std::ptrdiff_t>(typesOf(*whole, true).size()));
            call(entry_.id, *whole, told);
        }
    }

    // One that takes just what the reader has as out-arguments, since what was asked for is in it.
    Operation const* setterOfOutArguments(Operation const& reader) const
    {
        Operation const* const setter = find(*entry_.type, subjectOf(reader), OperationKind::write);
        std::vector<Type const*> outs;
        for (catalogue::Parameter const& parameter : reader.parameters) {
            if (!parameter.isIn) {
                outs.push_back(parameter.type);
            }
        }
        return setter != nullptr && !outs.empty() && typesOf(*setter, true) == outs ? setter : nullptr;
    }

    Inventory::Entry const entry_; // a copy: objects may come and go
    Value const& told_;
};

// What a document says of objects, by identifier, so that what an object belongs to comes before it.
using Objects = std::map<std::string, std::pair<Class const*, Value const*>>;

std::string readObjects(Value const& document, Objects& objects)
{
    if (!document.contains("objects")) {
        return {};
    }
    if (!document["objects"].is_object()) {
        return "\"objects\" is no JSON object";
    }
    for (auto const& [text, told] : document["objects"].items()) {
        ObjectName name;
        if (std::string wrong = ObjectName::parse(text, name); !wrong.empty()) {
            return wrong;
        }
        Class const* const type = catalogue::findClass(name.className);
        if (type == nullptr) {
            return inQuotes(name.className) + " is no class";
        }
        objects[name.id] = {type, &told};
    }
    return {};
}

std::string makePresent(Unit& unit, Objects const& objects, bool isComplete)
{
    std::vector<Inventory::Entry> const before = unit.inventory().all();
    for (Inventory::Entry const& entry : before) {
        auto const found = objects.find(entry.id);
        bool const isDoomed = found == objects.end() ? isComplete : found->second.second->is_null();
        if (isDoomed && !unit.remove(entry.id) && found != objects.end()) {
            return inQuotes(entry.id) + " cannot be removed";
        }
        if (isComplete && !isDoomed && entry.managed != nullptr) {
            entry.managed->clear();
        }
    }
    for (auto const& [id, object] : objects) {
        auto const& [type, told] = object;
        Inventory::Entry const* const present = unit.inventory().find(id);
        if (present != nullptr && present->type != type) {
            return inQuotes(id) + " is of class " + std::string(present->type->name);
        }
        if (present == nullptr && !told->is_null() && !unit.create(id, type->name)) {
            return inQuotes(id) + " cannot be created";
        }
    }
    return {};
}

std::string applyObjects(Unit& unit, Value const& document)
{
    Objects objects;
    std::string wrong = readObjects(document, objects);
    bool const isComplete = document.contains("complete") && document["complete"] == true;
    if (wrong.empty()) {
        wrong = makePresent(unit, objects, isComplete);
    }
    for (bool const isForced : {false, true}) { // what is set may change what others tell
        for (auto const& [id, object] : objects) {
            Inventory::Entry const* const entry = unit.inventory().find(id);
            if (wrong.empty() && entry != nullptr && !object.second->is_null()) {
                Applier const applier(*entry, *object.second);
                wrong = isForced ? applier.force() : applier.set();
            }
        }
    }
    return wrong;
}

std::string applyTime(Unit& unit, Value const& document)
{
    if (!document.contains("time")) {
        return {};
    }
    unsigned long const now = unit.inventory().clock().now();
    if (!document["time"].is_number_unsigned() || document["time"] < now) {
        return "\"time\" is no number of seconds, or before the unit's " + std::to_string(now);
    }
    if (document["time"].get<unsigned long>() > lastSecond) {
        return "\"time\" is " + document["time"].dump() + ", and a unit's ends with " + std::to_string(lastSecond);
    }
    unit.inventory().clock().advance(document["time"].get<unsigned long>() - now);
    return {};
}

std::string applyFaults(Unit& unit, Value const& document)
{
    if (!document.contains("faults")) {
        return {};
    }
    unit.faults().withdraw(0);
    for (Value const& text : document["faults"]) {
        catalogue::Words words;
        FaultPlan::Fault fault;
        unsigned long number = 0;
        std::string wrong =
            text.is_string() ? catalogue::splitWords(text.get<std::string>(), words) : "a fault is no text";
        wrong = wrong.empty() ? FaultPlan::parse(words, fault) : wrong;
        wrong = wrong.empty() ? unit.faults().inject(fault, number) : wrong;
        if (!wrong.empty()) {
            return wrong;
        }
    }
    return {};
}

} // namespace

Value save(Unit& unit)
{
    std::vector<Inventory::Entry> entries = unit.inventory().all();
    std::ranges::sort(entries, {}, &Inventory::Entry::id);
    Value objects = Value::object();
    for (Inventory::Entry const& entry : entries) {
        objects[ObjectName{std::string(entry.type->name), entry.id}.text()] = save(entry);
    }
    Value faults = Value::array();
    for (SimulatorClient::NumberedFault const& fault : unit.faults().all()) {
        faults.push_back(FaultPlan::text(fault.fault));
    }
    return {{"complete", true},
            {"seed", unit.inventory().seed()},
            {"time", unit.inventory().clock().now()},
            {"objects", objects},
            {"faults", faults}};
}

std::string apply(Unit& unit, Value const& document)
{
    if (!document.is_object()) {
        return "a scenario is a JSON object";
    }
    for (auto const& [name, value] : document.items()) {
        constexpr std::string_view known[] = {"complete", "seed", "time", "objects", "faults"};
        if (std::ranges::find(known, name) == std::end(known)) {
            return inQuotes(name) + " is nothing that a scenario has: complete, seed, time, objects, faults";
        }
    }
    std::string wrong = applyTime(unit, document);
    wrong = wrong.empty() ? applyObjects(unit, document) : wrong;
    return wrong.empty() ? applyFaults(unit, document) : wrong;
}

std::string load(Unit& unit, std::string const& file)
{
    std::string text;
    if (std::string why = catalogue::readWholeFile(file, text); !why.empty()) {
        return why;
    }
    Value document;
    std::string const wrong = catalogue::parseJson(text, document);
    return wrong.empty() ? scenario::apply(unit, document) : inQuotes(file) + " is " + wrong;
}

std::string store(Unit& unit, std::string const& file)
{
    std::error_code const error = catalogue::writeWholeFile(file, catalogue::toJson(save(unit)) + '\n');
    return error ? catalogue::whyNotWritten(file, error) : std::string();
}

} // namespace trs::sim::scenario
