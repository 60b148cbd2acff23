#include "tools/trsctl/UnitState.h"

#include "catalogue/Call.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/OperationKind.h"
#include "catalogue/Text.h"
#include "platform/TipprmiStream.h"
#include "tools/support/Nearest.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::Operation;
using catalogue::OperationKind;
using catalogue::Type;
using catalogue::Value;

bool takesKey(Operation const& operation) { return !catalogue::typesOf(operation, true).empty(); }

// Values of one side of an operation by their names, in order.
struct Named {
    std::string name;
    Type const* type;
};

std::vector<Named> namesOf(Operation const& operation, bool isIn)
{
    std::vector<Named> names;
    if (!isIn && operation.result != nullptr && operation.result->kind != Type::Kind::status) {
        names.push_back({"result", operation.result});
    }
    std::vector<std::string_view> const parameters = operation.parameterNames();
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (operation.parameters[i].isIn == isIn) {
            names.push_back({std::string(parameters[i]), operation.parameters[i].type});
        }
    }
    return names;
}

// Has fields that `value` leaves out as they are in `now`.
void complete(Type const& type, Value& value, Value const& now)
{
    if (type.kind != Type::Kind::record || !value.is_object()) {
        return;
    }
    for (catalogue::Field const& field : type.fields) {
        std::string const name(field.name);
        bool const isTold = now.is_object() && now.contains(name);
        if (!value.contains(name)) {
            value[name] = isTold ? now[name] : catalogue::zero(*field.type);
        } else {
            complete(*field.type, value[name], isTold ? now[name] : Value());
        }
    }
}

// A value as the unit tells it: constants by name, addresses as such. Empty, or what is wrong with it.
std::string normalise(Class const& type, Operation const& operation, Named const& named, Value& value)
{
    std::string wrong = catalogue::resolveConstants(type, operation, *named.type, value);
    TipprmiStream stream(100);
    wrong = wrong.empty() ? catalogue::writeValue(stream, *named.type, value) : wrong;
    if (!wrong.empty()) {
        return named.name + (wrong.front() == '.' || wrong.front() == '[' ? "" : ": ") + wrong;
    }
    Value told{{named.name, catalogue::readValue(stream, *named.type)}};
    catalogue::nameConstants(type, operation, told);
    value = told[named.name];
    return {};
}

// The results of one call.
std::string readResults(Class const& type, Operation const& operation, Value const& written, Value const* now,
                        Value& told)
{
    std::vector<Named> names = namesOf(operation, false);
    if (takesKey(operation)) {
        std::vector<Named> const keys = namesOf(operation, true);
        names.insert(names.begin(), keys.begin(), keys.end());
    }
    bool const hasNames = written.is_object() && std::ranges::any_of(names, [&written](Named const& each) {
                              return written.contains(each.name);
                          });
    Value values = hasNames || names.size() != 1 ? written : Value{{names.front().name, written}};
    if (!values.is_object()) {
        return "is no object with " + names.front().name;
    }
    for (auto const& [name, value] : values.items()) {
        if (std::ranges::find(names, name, &Named::name) == names.end()) {
            std::vector<std::string> known;
            std::ranges::transform(names, std::back_inserter(known), &Named::name);
            return '\'' + name + "' is nothing that it tells" + tools::didYouMean(name, known);
        }
    }
    told = Value::object();
    for (Named const& each : names) {
        Value const former = now != nullptr && now->contains(each.name) ? (*now)[each.name] : Value();
        Value value = values.contains(each.name) ? values[each.name]
                      : former.is_null()         ? catalogue::zero(*each.type)
                                                 : former;
        complete(*each.type, value, former);
        if (std::string wrong = normalise(type, operation, each, value); !wrong.empty()) {
            return wrong;
        }
        told[each.name] = std::move(value);
    }
    return {};
}

// The entry of a list that has the same keys; null when there is none.
Value const* findEntry(Operation const& operation, Value const& list, Value const& entry)
{
    std::vector<Named> const keys = namesOf(operation, true);
    for (Value const& each : list) {
        if (std::ranges::all_of(keys, [&](Named const& key) {
                return each.contains(key.name) && entry.is_object() && entry.contains(key.name) &&
                       each[key.name] == entry[key.name];
            })) {
            return &each;
        }
    }
    return nullptr;
}

std::string readReading(Class const& type, std::string const& name, Value const& written, UnitState::Object const* now,
                        UnitState::Object& object)
{
    Operation const* const operation = catalogue::find(type, name, OperationKind::read);
    if (operation == nullptr || kindOf(*operation) != OperationKind::read) {
        std::vector<std::string> names;
        for (Operation const* const each : type.operations()) {
            if (kindOf(*each) == OperationKind::read) {
                names.emplace_back(each->name);
                names.push_back(briefNameOf(*each));
            }
        }
        return fmt::format("'{}' reads nothing of {}{}", name, type.interface, tools::didYouMean(name, names));
    }
    if (written.is_object() && written.size() == 1 && written.contains("error")) {
        return {}; // of a snapshot
    }
    UnitState::Reading const* const former = now != nullptr ? now->find(*operation) : nullptr;
    UnitState::Reading reading{operation, nullptr};
    std::string wrong;
    if (!takesKey(*operation)) {
        wrong = readResults(type, *operation, written, former != nullptr ? &former->told : nullptr, reading.told);
    } else if (!written.is_array()) {
        wrong = "is no list, an entry for each key";
    } else {
        reading.told = Value::array();
        for (std::size_t i = 0; i < written.size() && wrong.empty(); ++i) {
            Value const* const entry = former != nullptr ? findEntry(*operation, former->told, written[i]) : nullptr;
            wrong = readResults(type, *operation, written[i], entry, reading.told.emplace_back());
            wrong = wrong.empty() ? wrong : fmt::format("[{}] {}", i, wrong);
        }
    }
    object.readings.push_back(std::move(reading));
    return wrong.empty() ? wrong : fmt::format("{}: {}", name, wrong);
}

Class const* classCalled(std::string const& name)
{
    for (Class const* const each : catalogue::classes()) {
        if (catalogue::isSameWord(each->name, name) || catalogue::isSameWord(each->interface, name)) {
            return each;
        }
    }
    return nullptr;
}

std::string readObject(std::string const& text, Value const& written, UnitState const& now, UnitState::Object& object)
{
    auto const isCalled = [&text](catalogue::ObjectName const& each) { return catalogue::isSameWord(each.id, text); };
    auto const wellKnown = std::ranges::find_if(catalogue::ObjectName::wellKnown(), isCalled);
    if (wellKnown != catalogue::ObjectName::wellKnown().end()) {
        object.name = *wellKnown;
    } else if (std::string wrong = catalogue::ObjectName::parse(text, object.name); !wrong.empty()) {
        return wrong;
    }
    UnitState::Object const* const known = now.find(object.name.id);
    object.type = known != nullptr ? known->type : classCalled(object.name.className);
    if (object.type == nullptr) {
        return '\'' + object.name.className + "' is no class";
    }
    object.name.className = object.type->name;
    object.isThere = !written.is_null();
    if (object.isThere && !written.is_object()) {
        return text + " is no object of readings, and not null";
    }
    for (auto const& [name, value] : written.items()) {
        if (std::string wrong = readReading(*object.type, name, value, known, object); !wrong.empty()) {
            return fmt::format("{} {}", text, wrong);
        }
    }
    return {};
}

} // namespace

UnitState::Reading const* UnitState::Object::find(Operation const& operation) const
{
    auto const found = std::ranges::find(readings, &operation, &Reading::operation);
    return found != readings.end() ? &*found : nullptr;
}

UnitState::Object const* UnitState::find(std::string const& id) const
{
    auto const found = objects.find(id);
    return found != objects.end() ? &found->second : nullptr;
}

bool UnitState::has(std::string const& id) const
{
    Object const* const object = find(id);
    return object != nullptr && object->isThere;
}

UnitState readTold(Value const& document)
{
    UnitState state;
    state.isComplete = document.value("complete", false);
    for (auto const& [text, told] : document["objects"].items()) {
        UnitState::Object object;
        catalogue::ObjectName::parse(text, object.name);
        object.type = catalogue::findClass(object.name.className);
        if (object.type == nullptr) {
            continue;
        }
        object.name.className = object.type->name;
        for (auto const& [name, value] : told.items()) {
            Operation const* const operation = object.type->find(name);
            bool const isError = value.is_object() && value.contains("error") && value.size() == 1;
            if (operation != nullptr && !isError) {
                object.readings.push_back({operation, value});
            }
        }
        std::string const id = object.name.id;
        state.objects.emplace(id, std::move(object));
    }
    return state;
}

std::string readWanted(Value const& document, UnitState const& now, UnitState& wanted)
{
    bool const hasObjects = document.is_object() && document.contains("objects") && document["objects"].is_object();
    if (!hasObjects) {
        return R"(there is no "objects" in it)";
    }
    for (auto const& [name, value] : document.items()) {
        if (name != "objects" && name != "complete") {
            return '\'' + name + R"(' is neither "objects" nor "complete")";
        }
    }
    wanted.isComplete = document.contains("complete") && document["complete"] == true;
    for (auto const& [text, written] : document["objects"].items()) {
        UnitState::Object object;
        if (std::string wrong = readObject(text, written, now, object); !wrong.empty()) {
            return wrong;
        }
        std::string const id = object.name.id;
        if (!wanted.objects.emplace(id, std::move(object)).second) {
            return text + " is there twice";
        }
    }
    return {};
}

} // namespace trs::ctl
