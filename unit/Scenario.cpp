#include "unit/Scenario.h"

#include "broker/PrintableText.h"
#include "broker/ServerTap.h"
#include "catalogue/Call.h"
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "catalogue/Text.h"
#include "unit/Inventory.h"
#include "unit/Managed.h"
#include "unit/Unit.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>

namespace trs::sim::scenario {

namespace {

using catalogue::Class;
using catalogue::ObjectName;
using catalogue::Operation;
using catalogue::Outcome;
using catalogue::Value;

constexpr unsigned long format = 2; // documents without a number are of the first one

constexpr unsigned long lastSecond = UINT32_MAX; // of the time, as it travels

std::string inQuotes(std::string const& text) { return '\'' + printable(text) + '\''; }

std::string nameOf(Object const& object) { return ObjectName{std::string(object.type().name), object.id()}.text(); }

// What a document says of one object. Those of the first format say what all operations tell: what is no fact follows
// from those that are, and is not looked at where the document is complete.
class Applier {
public:
    Applier(Object& object, Value const& said, bool isOfFirstFormat)
        : object_(object), said_(said), isOfFirstFormat_(isOfFirstFormat)
    {
    }

    // Has the object hold the facts. Empty, or what is wrong.
    std::string hold() const
    {
        if (!said_.is_object()) {
            return inQuotes(object_.id()) + " is not described by a JSON object";
        }
        for (auto const& [name, value] : said_.items()) {
            Operation const* const operation = object_.type().find(name);
            if (isOfFirstFormat_ && operation != nullptr && isPlainRead(*operation) &&
                (tells(*operation, value) || isBeyondUnset(*operation, value))) {
                continue; // which may be what nobody set
            }
            std::string const wrong = object_.facts().take(name, value);
            if (!wrong.empty() && wrong != Facts::unknown) {
                return nameOf(object_).append(" ").append(name).append(": ").append(wrong);
            }
        }
        return {};
    }
    // Makes the object tell what is no fact of its own. Empty, or what it cannot be made to tell.
    std::string force() const
    {
        for (auto const& [name, value] : said_.items()) {
            Operation const* const operation = object_.type().find(name);
            if (object_.facts().knows(name) || (isOfFirstFormat_ && operation != nullptr)) {
                continue;
            }
            std::string wrong =
                operation == nullptr ? " is no fact and no operation of the object" : force(*operation, value);
            if (!wrong.empty()) {
                return nameOf(object_) + ' ' + inQuotes(name) + wrong;
            }
        }
        return {};
    }

private:
    bool tells(Operation const& operation, Value const& value) const
    {
        Outcome const outcome = catalogue::call(object_.proxy<TipprmiObjectClient>(), operation, {});
        return outcome.kind == Outcome::Kind::done && outcome.results == value;
    }
    // Whether it is 0 or empty where that cannot be set: what was told then as long as nobody set it.
    bool isBeyondUnset(Operation const& operation, Value const& value) const
    {
        Operation const* const writer = writerOf(object_.type(), operation);
        std::vector<Value> unset;
        for (catalogue::Type const* const type : typesOf(operation, false)) {
            unset.push_back(catalogue::zero(*type));
        }
        return writer != nullptr && value.is_object() &&
               std::equal(value.begin(), value.end(), unset.begin(), unset.end()) &&
               !catalogue::violations(*writer, unset, 1).empty();
    }
    std::string force(Operation const& operation, Value const& value) const
    {
        if (!isPlainRead(operation)) {
            return kindOf(operation) == catalogue::OperationKind::read
                       ? " cannot be made to tell " + catalogue::toJson(value, -1)
                       : " reads nothing";
        }
        if (tells(operation, value)) {
            return {};
        }
        std::string const wrong = object_.force(operation, value);
        return wrong.empty() ? wrong : ": " + wrong;
    }

    Object& object_;
    Value const& said_;
    bool const isOfFirstFormat_;
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
    std::vector<std::string> before;
    std::ranges::transform(unit.inventory().all(), std::back_inserter(before), &Object::id);
    for (std::string const& id : before) {
        auto const found = objects.find(id);
        bool const isDoomed = found == objects.end() ? isComplete : found->second.second->is_null();
        if (isDoomed && unit.inventory().find(id) != nullptr && !unit.remove(id) && found != objects.end()) {
            return inQuotes(id) + " cannot be removed";
        }
    }
    for (auto const& [id, object] : objects) {
        auto const& [type, said] = object;
        Object const* const present = unit.inventory().find(id);
        if (present != nullptr && &present->type() != type) {
            return inQuotes(id) + " is of class " + std::string(present->type().name);
        }
        if (present == nullptr && !said->is_null() && !unit.create(id, type->name)) {
            return inQuotes(id) + " cannot be created";
        }
    }
    return {};
}

std::string settle(Unit& unit)
{
    std::string wrong;
    std::vector<Object*> const all = unit.inventory().all();
    for (Object* const object : all) {
        wrong = wrong.empty() ? object->settle() : wrong;
        object->changed();
    }
    return wrong;
}

std::string applyObjects(Unit& unit, Value const& document)
{
    Objects objects;
    std::string wrong = readObjects(document, objects);
    bool const isComplete = document.contains("complete") && document["complete"] == true;
    bool const isOfFirstFormat = isComplete && !document.contains("format");
    wrong = wrong.empty() ? makePresent(unit, objects, isComplete) : wrong;
    std::vector<Applier> appliers;
    for (auto const& [id, object] : objects) {
        Object* const present = unit.inventory().find(id);
        if (present == nullptr || !wrong.empty() || object.second->is_null()) {
            continue;
        }
        if (isComplete && object.second->is_object()) {
            present->facts().forgetBut(*object.second);
        }
        appliers.emplace_back(*present, *object.second, isOfFirstFormat);
        wrong = appliers.back().hold();
    }
    wrong = wrong.empty() ? settle(unit) : wrong;
    for (Applier const& applier : appliers) {
        wrong = wrong.empty() ? applier.force() : wrong;
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
    unit.advance(document["time"].get<unsigned long>() - now);
    return {};
}

std::string applyFaults(Unit& unit, Value const& faults)
{
    unit.misbehaviours().withdraw(0);
    for (Value const& text : faults) {
        catalogue::Words words;
        MisbehaviourPlan::Misbehaviour fault;
        unsigned long number = 0;
        std::string wrong =
            text.is_string() ? catalogue::splitWords(text.get<std::string>(), words) : "a fault is no text";
        wrong = wrong.empty() ? MisbehaviourPlan::parse(words, fault) : wrong;
        wrong = wrong.empty() ? unit.misbehaviours().inject(fault, number) : wrong;
        if (!wrong.empty()) {
            return wrong;
        }
    }
    return {};
}

// What a document says of the unit as a whole, but for its time.
std::string applyWhole(Unit& unit, Value const& document)
{
    if (document.contains("load")) {
        std::optional<Load::Profile> const profile =
            document["load"].is_string() ? Load::profileOf(document["load"].get<std::string>()) : std::nullopt;
        if (!profile) {
            return "\"load\" is " + catalogue::toJson(document["load"], -1) + ", and none of " + Load::names();
        }
        unit.inventory().load().setProfile(*profile);
    }
    if (document.contains("seed")) {
        if (!document["seed"].is_number_unsigned()) {
            return "\"seed\" is " + catalogue::toJson(document["seed"], -1) + ", and no number from 0 on";
        }
        if (document["seed"] != unit.inventory().seed()) {
            unit.setSeed(document["seed"].get<unsigned long>());
        }
    }
    return document.contains("faults") ? applyFaults(unit, document["faults"]) : std::string();
}

std::string check(Value const& document)
{
    if (!document.is_object()) {
        return "a scenario is a JSON object";
    }
    for (auto const& [name, value] : document.items()) {
        constexpr std::string_view known[] = {"format", "complete", "seed", "load", "time", "objects", "faults"};
        if (std::ranges::find(known, name) == std::end(known)) {
            return inQuotes(name) +
                   " is nothing that a scenario has: format, complete, seed, load, time, objects, faults";
        }
    }
    if (document.contains("format") && document["format"] != format) {
        return "\"format\" is " + catalogue::toJson(document["format"], -1) + ", and not " + std::to_string(format);
    }
    return {};
}

} // namespace

Value save(Unit& unit)
{
    UntappedCalls const own;
    std::vector<Object*> all = unit.inventory().all();
    std::ranges::sort(all, {}, &Object::id);
    Value objects = Value::object();
    for (Object* const object : all) {
        if (!object->isDerived()) {
            objects[nameOf(*object)] = object->facts().say();
        }
    }
    Value document = saveWhole(unit);
    document["objects"] = std::move(objects);
    return document;
}

Value saveWhole(Unit& unit)
{
    Value faults = Value::array();
    for (MisbehaviourPlan::Misbehaviour const& fault : unit.misbehaviours().left()) {
        faults.push_back(MisbehaviourPlan::text(fault));
    }
    return {{"format", format},
            {"complete", true},
            {"seed", unit.inventory().seed()},
            {"load", Load::nameOf(unit.inventory().load().profile())},
            {"time", unit.inventory().clock().now()},
            {"faults", std::move(faults)}};
}

std::string apply(Unit& unit, Value const& document)
{
    UntappedCalls const own; // which meet no fault
    std::string wrong = check(document);
    if (!wrong.empty()) {
        return wrong;
    }
    Value const before = save(unit);
    wrong = applyTime(unit, document);
    wrong = wrong.empty() ? applyWhole(unit, document) : wrong;
    wrong = wrong.empty() ? applyObjects(unit, document) : wrong;
    if (!wrong.empty()) {
        unit.inventory().clock().turnBack(before["time"].get<unsigned long>());
        applyWhole(unit, before);
        applyObjects(unit, before);
    }
    return wrong;
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
