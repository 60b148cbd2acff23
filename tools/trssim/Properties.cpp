#include "tools/trssim/Properties.h"

#include "platform/TipprmiStream.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/NameOf.h"
#include "tools/catalogue/ObjectName.h"

#include <algorithm>

namespace sim {

namespace {

using catalogue::Operation;
using catalogue::Type;
using catalogue::Value;

// The class whose references lead to objects of any kind.
constexpr std::string_view anyObject = reflect::className<ApplicationObjectClient>;

// What an operation is about: "Mtu" of getMtu and setMtu. Empty for one without such a prefix.
std::string_view subjectOf(Operation const& operation, std::initializer_list<std::string_view> prefixes)
{
    for (std::string_view const prefix : prefixes) {
        if (operation.name.starts_with(prefix)) {
            return operation.name.substr(prefix.size());
        }
    }
    return {};
}

bool isSetter(Operation const& operation) { return !subjectOf(operation, {"set", "update"}).empty(); }

// The types that an operation takes or tells, in order.
std::vector<Type const*> typesOf(Operation const& operation, bool isIn)
{
    std::vector<Type const*> types;
    if (!isIn && operation.result != nullptr && operation.result->kind != Type::Kind::status) {
        types.push_back(operation.result);
    }
    for (catalogue::Parameter const& parameter : operation.parameters) {
        if (parameter.isIn == isIn) {
            types.push_back(parameter.type);
        }
    }
    return types;
}

std::string keyOf(Operation const& reader, std::vector<Value> const& arguments)
{
    std::string key(reader.name);
    for (Value const& argument : arguments) {
        key += '\0' + catalogue::toJson(argument, -1);
    }
    return key;
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

// The operation that tells what this one is given.
Operation const* Properties::readerOf(Operation const& setter) const
{
    std::string_view const subject = subjectOf(setter, {"set", "update"});
    std::vector<Type const*> const given = typesOf(setter, true);
    for (Operation const* const candidate : type_.operations()) {
        std::string_view const read = subjectOf(*candidate, {"get", "is", "has"});
        if (read.empty() || !std::ranges::equal(read, subject, {}, ::tolower, ::tolower)) {
            continue;
        }
        std::vector<Type const*> both = typesOf(*candidate, true);
        std::vector<Type const*> const told = typesOf(*candidate, false);
        both.insert(both.end(), told.begin(), told.end());
        if (both == given) {
            return candidate;
        }
    }
    return nullptr;
}

// False when there is no room.
bool Properties::keep(Operation const& setter, Values const& arguments)
{
    Operation const* const reader = readerOf(setter);
    if (reader == nullptr) {
        return true;
    }
    auto const split = arguments.begin() + static_cast<std::ptrdiff_t>(typesOf(*reader, true).size());
    std::string const key = keyOf(*reader, {arguments.begin(), split});
    if (kept_.size() == mostEntries && !kept_.contains(key)) {
        return false;
    }
    kept_[key] = {split, arguments.end()};
    return true;
}

Value Properties::initial(Type const& type) const
{
    switch (type.kind) {
    case Type::Kind::boolean:
        return false;
    case Type::Kind::text:
        return "";
    case Type::Kind::sequence: {
        Value list = Value::array();
        if (type.element->kind == Type::Kind::object && type.element->name != anyObject) {
            for (Inventory::Entry const& entry : inventory_.related(id_, type.element->name)) {
                list.push_back(catalogue::ObjectName{std::string(entry.type->name), entry.id}.text());
            }
        }
        return list;
    }
    case Type::Kind::array: {
        std::vector<Value> const elements(type.count, initial(*type.element));
        return elements;
    }
    case Type::Kind::record: {
        Value record = Value::object();
        for (catalogue::Field const& field : type.fields) {
            record[std::string(field.name)] = initial(*field.type);
        }
        return record;
    }
    case Type::Kind::object: {
        // A reference to the general application object is one to any object; here, to this one.
        bool const isAny = type.name == anyObject && isA(type_, type.name);
        std::vector<Inventory::Entry> const found =
            isAny ? std::vector<Inventory::Entry>{{id_, &type_}} : inventory_.related(id_, type.name);
        return found.empty() ? Value() : Value(catalogue::ObjectName{std::string(type.name), found.front().id}.text());
    }
    default:
        return 0;
    }
}

Value Properties::told(Operation const& reader, Values const& arguments, std::size_t place, Type const& type) const
{
    auto const found = kept_.find(keyOf(reader, arguments));
    return found != kept_.end() ? found->second[place] : initial(type);
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
    bool const isReader = !subjectOf(*operation, {"get", "is", "has", "Get"}).empty();
    bool const isDone = isReader || (isSetter(*operation) && keep(*operation, arguments));
    std::size_t place = 0;
    auto const write = [&](Type const& type) {
        catalogue::writeValue(reply, type, isReader ? told(*operation, arguments, place++, type) : initial(type));
    };
    if (operation->result != nullptr && operation->result->kind == Type::Kind::status) {
        catalogue::writeStatus(reply, isDone);
    } else if (operation->result != nullptr && operation->result->kind == Type::Kind::boolean && !isReader) {
        catalogue::writeValue(reply, *operation->result, isDone);
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

} // namespace sim
