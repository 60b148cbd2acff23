#include "unit/Properties.h"

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

} // namespace

Operation const* Properties::find(unsigned long classId, unsigned long opIndex) const
{
    for (catalogue::Class const* type = &type_; type != nullptr; type = type->base()) {
        auto const found = std::ranges::find(type->own, opIndex, &Operation::index);
        if (type->id == classId) {
            return found != type->own.end() ? &*found : nullptr;
        }
    }
    return nullptr;
}

std::vector<Properties::Kept> Properties::all() const
{
    std::vector<Kept> all;
    for (auto const& [key, kept] : kept_) {
        all.push_back(kept);
    }
    return all;
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
    Operation const* const reader = readerOf(type_, setter);
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
            for (Inventory::Entry const& entry : inventory_.related(id_, type.element->name)) {
                list.push_back(catalogue::ObjectName{std::string(entry.type->name), entry.id}.text());
            }
        }
        return list;
    }
    if (type.kind != Type::Kind::object) {
        return catalogue::zero(type);
    }
    // A reference to the general application object is one to any object; here, to this one.
    if (type.name == anyObject && isA(type_, type.name)) {
        return catalogue::ObjectName{std::string(type.name), id_}.text();
    }
    std::vector<Inventory::Entry> const found = inventory_.related(id_, type.name);
    return found.empty() ? Value() : Value(catalogue::ObjectName{std::string(type.name), found.front().id}.text());
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
    return values;
}

Properties::Answer Properties::follow(ListRule const& rule, Operation const& operation, Values const& arguments)
{
    using Effect = ListRule::Effect;
    Operation const& subject = *type_.find(rule.subject);
    bool const isRead = kindOf(subject) == OperationKind::read;
    std::vector<Type const*> const types = typesOf(subject, false);
    auto const kept = kept_.find(keyOf(subject, {}));
    Value value = kept != kept_.end() ? kept->second.told.front() : isRead ? initial(*types.front()) : Value::array();
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
        changeList(rule.effect, isRead ? types.front() : nullptr, value, arguments, typesOf(operation, true)) &&
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
