#include "unit/Properties.h"

#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "platform/TipprmiStream.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/NameOf.h"

#include <algorithm>

namespace trs::sim {

namespace {

using catalogue::Operation;
using catalogue::OperationKind;
using catalogue::Type;
using catalogue::Value;

// The class whose references lead to objects of any kind.
constexpr std::string_view anyObject = reflect::className<ApplicationObjectClient>;

constexpr std::uint32_t greatestNumber = 0xffffffff;

std::string keyOf(Operation const& operation, std::vector<Value> const& arguments)
{
    std::string key(operation.name);
    for (Value const& argument : arguments) {
        key += '\0' + catalogue::toJson(argument, -1);
    }
    return key;
}

bool hasStatus(Operation const& operation)
{
    return operation.result != nullptr && operation.result->kind == Type::Kind::status;
}

template <class Visitor>
void forEachNamed(Operation const& operation, bool isIn, Visitor const& visit)
{
    if (!isIn && operation.result != nullptr && operation.result->kind != Type::Kind::status) {
        visit("result", *operation.result);
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (operation.parameters[i].isIn == isIn) {
            visit(std::string(names[i]), *operation.parameters[i].type);
        }
    }
}

bool isRead(Operation const& operation) { return kindOf(operation) == OperationKind::read; }

// Whether what the operation tells, or is given and no other tells, can be kept.
bool isKept(Operation const& operation) { return isRead(operation) || ruleOf(operation) != nullptr; }

// The parameters of one direction by name, a plain result as "result".
Value byName(Operation const& operation, bool isIn, std::vector<Value> const& values)
{
    Value all = Value::object();
    std::size_t place = 0;
    forEachNamed(operation, isIn, [&](std::string const& name, Type const&) { all[name] = values[place++]; });
    return all;
}

// The other way round. Empty, or what is wrong.
std::string fromNames(Operation const& operation, bool isIn, Value const& told, std::vector<Value>& values)
{
    std::string wrong;
    forEachNamed(operation, isIn, [&](std::string const& name, Type const& type) {
        if (!wrong.empty()) {
            return;
        }
        if (!told.is_object() || !told.contains(name)) {
            wrong = told.is_object() ? name + " is missing" : "the results are no object";
            return;
        }
        TipprmiStream stream(100);
        wrong = catalogue::writeValue(stream, type, told[name]);
        if (!wrong.empty()) {
            wrong = name + (wrong.front() == '.' || wrong.front() == '[' ? "" : ": ") + wrong;
            return;
        }
        values.push_back(catalogue::readValue(stream, type)); // as the unit itself says it
    });
    return wrong;
}

} // namespace

Operation const* Properties::find(unsigned long classId, unsigned long opIndex) const
{
    Operation const* const operation =
        catalogue::findOperation(static_cast<std::uint32_t>(classId), static_cast<std::uint32_t>(opIndex));
    return operation != nullptr && isA(object_.type(), operation->className) ? operation : nullptr;
}

Facts::Others Properties::facts()
{
    return {[this](Value& object) { say(object); },
            [this](std::string const& name) {
                Operation const* const operation = object_.type().find(name);
                return operation != nullptr && isKept(*operation) && !isOthers_(*operation);
            },
            [this](std::string const& name, Value const& told) { return take(*object_.type().find(name), told); },
            [this] { kept_.clear(); }};
}

void Properties::say(Value& object) const
{
    for (auto const& [key, kept] : kept_) {
        std::string const name(kept.operation->name);
        if (!isRead(*kept.operation)) {
            object[name] = kept.told;
        } else if (kept.arguments.empty()) {
            object[name] = byName(*kept.operation, false, kept.told);
        } else {
            Value element = byName(*kept.operation, true, kept.arguments);
            element.update(byName(*kept.operation, false, kept.told));
            object[name].push_back(std::move(element));
        }
    }
}

std::string Properties::take(Operation const& operation, Value const& told)
{
    bool const hasArguments = isRead(operation) && !typesOf(operation, true).empty();
    if (!isRead(operation)) { // what an operation that no other reads was given
        return told.is_array() && told.size() == 1 && keep({&operation, {}, {told[0]}}) ? "" : "reads nothing";
    }
    if (!hasArguments) {
        return takeEntry(operation, told);
    }
    if (!told.is_array()) {
        return "the entries are no array";
    }
    std::string wrong;
    for (Value const& element : told) {
        wrong = wrong.empty() ? takeEntry(operation, element) : wrong;
    }
    return wrong;
}

std::string Properties::takeEntry(Operation const& operation, Value const& told)
{
    Kept kept{&operation, {}, {}};
    if (std::string wrong = fromNames(operation, true, told, kept.arguments); !wrong.empty()) {
        return wrong;
    }
    if (std::string wrong = fromNames(operation, false, told, kept.told); !wrong.empty()) {
        return wrong;
    }
    if (told.size() != kept.arguments.size() + kept.told.size()) {
        return "one result too many";
    }
    if (Operation const* const writer = writerOf(object_.type(), operation); writer != nullptr && hasLimits(*writer)) {
        Values given = kept.arguments;
        given.insert(given.end(), kept.told.begin(), kept.told.end());
        std::vector<catalogue::Violation> const beyond = catalogue::violations(*writer, given, 1);
        if (!beyond.empty()) {
            return beyond.front().text();
        }
    }
    return keep(std::move(kept)) ? "" : "there is no room for it";
}

bool Properties::keep(Kept kept)
{
    std::string const key = keyOf(*kept.operation, kept.arguments);
    if (kept_.size() == mostEntries && !kept_.contains(key)) {
        return false;
    }
    kept_[key] = std::move(kept);
    return true;
}

bool Properties::set(Operation const& setter, Values const& arguments)
{
    Operation const* const reader = readerOf(object_.type(), setter);
    if (reader == nullptr) {
        return true;
    }
    auto const split = arguments.begin() + static_cast<std::ptrdiff_t>(typesOf(*reader, true).size());
    return keep({reader, {arguments.begin(), split}, {split, arguments.end()}});
}

Value Properties::initial(Type const& type) const
{
    if (type.kind == Type::Kind::sequence) {
        Value list = Value::array();
        if (type.element->kind == Type::Kind::object && type.element->name != anyObject) {
            for (Object const* const each : object_.inventory().related(object_.id(), type.element->name)) {
                list.push_back(catalogue::ObjectName{std::string(each->type().name), each->id()}.text());
            }
        }
        return list;
    }
    if (type.kind != Type::Kind::object) {
        return catalogue::zero(type);
    }
    // A reference to the general application object is one to any object; here, to this one.
    if (type.name == anyObject && isA(object_.type(), type.name)) {
        return catalogue::ObjectName{std::string(type.name), object_.id()}.text();
    }
    std::vector<Object*> const found = object_.inventory().related(object_.id(), type.name);
    return found.empty() ? Value() : Value(catalogue::ObjectName{std::string(type.name), found.front()->id()}.text());
}

// As typesOf() lists what the operation tells.
Properties::Values Properties::told(Operation const& reader, Values const& arguments) const
{
    auto const found = kept_.find(keyOf(reader, arguments));
    if (found != kept_.end()) {
        return found->second.told;
    }
    Values values;
    for (Type const* const type : typesOf(reader, false)) {
        values.push_back(initial(*type));
    }
    // What could be set, where 0 cannot.
    Operation const* const writer = writerOf(object_.type(), reader);
    if (writer != nullptr && arguments.empty() && catalogue::hasLimits(*writer)) {
        catalogue::bringWithin(*writer, values);
    }
    return values;
}

Properties::Answer Properties::follow(ListRule const& rule, Operation const& operation, Values const& arguments)
{
    using Effect = ListRule::Effect;
    Operation const& subject = *object_.type().find(rule.subject);
    bool const isSubjectRead = isRead(subject);
    std::vector<Type const*> const types = typesOf(subject, false);
    auto const kept = kept_.find(keyOf(subject, {}));
    Value value = kept != kept_.end() ? kept->second.told.front()
                  : isSubjectRead     ? initial(*types.front())
                                      : Value::array();
    switch (rule.effect) {
    case Effect::contains:
        return {true, {contains(value, arguments.front())}};
    case Effect::find:
        return {true, {contains(value, arguments.front()) ? arguments.front() : catalogue::zero(*operation.result)}};
    case Effect::isSet:
        return {true, {!value.is_null()}};
    case Effect::increase:
    case Effect::decrease: {
        std::uint32_t const number = value.is_number() ? value.get<std::uint32_t>() : 0;
        value = rule.effect == Effect::increase ? std::min(number, greatestNumber - 1) + 1 : std::max(number, 1U) - 1;
        return {keep({&subject, {}, {value}}), {value}};
    }
    default:
        break;
    }
    bool const isDone =
        changeList(rule.effect, isSubjectRead ? types.front() : nullptr, value, arguments, typesOf(operation, true)) &&
        keep({&subject, {}, {value}});
    return {isDone, {}};
}

Properties::Answer Properties::carryOut(Operation const& operation, Values const& arguments)
{
    if (ListRule const* const rule = ruleOf(operation)) {
        return follow(*rule, operation, arguments);
    }
    switch (kindOf(operation)) {
    case OperationKind::read:
        return {true, told(operation, arguments)};
    case OperationKind::write:
        return {set(operation, arguments), {}};
    default:
        return {false, {}};
    }
}

bool Properties::answer(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    Operation const* const operation = find(classId, opIndex);
    if (operation == nullptr) {
        return false;
    }
    Values arguments;
    for (Type const* const type : typesOf(*operation, true)) {
        arguments.push_back(catalogue::readValue(request, *type));
    }
    if (request.available() != 0) {
        request.fail();
    }
    if (request.hasUnmarshallingFailed()) {
        return true;
    }
    Answer const answer = carryOut(*operation, arguments);
    std::size_t place = 0;
    auto const write = [&](Type const& type) {
        catalogue::writeValue(reply, type, place < answer.told.size() ? answer.told[place] : initial(type));
        ++place;
    };
    if (hasStatus(*operation)) {
        catalogue::writeStatus(reply, answer.isDone);
    } else if (operation->result != nullptr && operation->result->kind == Type::Kind::boolean && answer.told.empty()) {
        catalogue::writeValue(reply, *operation->result, answer.isDone);
        ++place;
    } else if (operation->result != nullptr) {
        write(*operation->result);
    }
    for (catalogue::Parameter const& parameter : operation->parameters) {
        if (!parameter.isIn) {
            write(*parameter.type);
        }
    }
    return true;
}

} // namespace trs::sim
