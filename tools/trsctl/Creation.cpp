#include "tools/trsctl/Creation.h"

#include "catalogue/Collections.h"
#include "catalogue/Limits.h"
#include "catalogue/OperationKind.h"
#include "catalogue/Text.h"

#include <algorithm>

namespace trs::ctl {

namespace {

using catalogue::Collection;
using catalogue::Operation;
using catalogue::Type;
using catalogue::Value;

// What the owner of a collection tells of an object in it; null when it tells nothing.
Value entryIn(UnitState::Object const& owner, Collection const& collection, UnitState::Object const& element)
{
    Operation const* const reader = owner.type->find(collection.reader);
    UnitState::Reading const* const reading = reader != nullptr ? owner.find(*reader) : nullptr;
    return reading != nullptr ? entryOf(reading->told, element.name.id) : Value();
}

class Creation {
public:
    Creation(UnitState const& wanted, UnitState const& now) : wanted_(wanted), now_(now) {}

    std::optional<Step> of(UnitState::Object const& object) const
    {
        Collection const* const collection = catalogue::findCollectionOf(*object.type);
        UnitState::Object const* const owner = collection != nullptr ? ownerOf(object, *collection) : nullptr;
        if (owner == nullptr) {
            return std::nullopt;
        }
        Operation const& insert = *owner->type->find(collection->insert);
        std::vector<Value> in;
        std::vector<std::string_view> const names = insert.parameterNames();
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (insert.parameters[i].isIn) {
                in.push_back(fill(*insert.parameters[i].type, names[i], object, *owner, *collection));
            }
        }
        catalogue::bringWithin(insert, in);
        return Step{Step::Kind::create, owner->name, owner->type, &insert, std::move(in), {}, object.name.id};
    }

private:
    // The object that makes it: the one that is to lead to it, the one that it is a part of, or the only one that can.
    UnitState::Object const* ownerOf(UnitState::Object const& object, Collection const& collection) const
    {
        UnitState::Object const* found = nullptr;
        int candidates = 0;
        for (auto const& [id, each] : now_.objects) {
            if (!each.isThere || !catalogue::isOf(each.type, collection.className)) {
                continue;
            }
            ++candidates;
            UnitState::Object const* const leader = wanted_.find(id);
            if (isUnder(object.name.id, id) || (leader != nullptr && !entryIn(*leader, collection, object).is_null())) {
                return &each;
            }
            found = &each;
        }
        return candidates == 1 ? found : nullptr;
    }

    // A parameter of a creation, or a field of one: what the new object is to tell under that name, or the parts of it,
    // or what its owner knows it by; else zero.
    Value fill(Type const& type, std::string_view name, UnitState::Object const& object, UnitState::Object const& owner,
               Collection const& collection) const
    {
        if (Value told = lookUp(type, name, object); !told.is_null()) {
            return told;
        }
        for (auto const& [id, part] : wanted_.objects) {
            Value told = part.isThere && isUnder(id, object.name.id) ? lookUp(type, name, part) : Value();
            if (!told.is_null()) {
                return told;
            }
        }
        if (type.kind == Type::Kind::record) {
            Value record = Value::object();
            for (catalogue::Field const& field : type.fields) {
                record[std::string(field.name)] = fill(*field.type, field.name, object, owner, collection);
            }
            return record;
        }
        UnitState::Object const* const leader = wanted_.find(owner.name.id);
        Value const entry = leader != nullptr ? entryIn(*leader, collection, object) : Value();
        if (entry.is_object() && entry.contains(name)) {
            return entry[std::string(name)];
        }
        bool const isKey = type.kind >= Type::Kind::octet && type.kind <= Type::Kind::unsigned32 && name == "number";
        long number = 0;
        std::string const& id = object.name.id;
        if (isKey && catalogue::parseNumber(id.substr(id.rfind('/') + 1), 0, INT32_MAX, number)) {
            return number;
        }
        return name == "description" && type.kind == Type::Kind::text ? descriptionOf(object) : catalogue::zero(type);
    }

    // What hardware is expected to be.
    static Value descriptionOf(UnitState::Object const& object)
    {
        Operation const* const reader = object.type->find("getExpectedHwType");
        UnitState::Reading const* const reading = reader != nullptr ? object.find(*reader) : nullptr;
        return reading != nullptr ? toldValues(*reader, reading->told).front() : Value("");
    }

    static Value lookUp(Type const& type, std::string_view name, UnitState::Object const& object)
    {
        for (UnitState::Reading const& reading : object.readings) {
            bool const isMeant = catalogue::typesOf(*reading.operation, true).empty() &&
                                 catalogue::typesOf(*reading.operation, false) == std::vector<Type const*>{&type} &&
                                 catalogue::isSameWord(subjectOf(*reading.operation), name);
            if (isMeant) {
                return toldValues(*reading.operation, reading.told).front();
            }
        }
        return {};
    }

    UnitState const& wanted_;
    UnitState const& now_;
};

} // namespace

std::optional<Step> creationOf(UnitState::Object const& object, UnitState const& wanted, UnitState const& now)
{
    return Creation(wanted, now).of(object);
}

std::optional<Step> removalOf(UnitState::Object const& object, UnitState const& now)
{
    Collection const* const collection = catalogue::findCollectionOf(*object.type);
    if (collection == nullptr) {
        return std::nullopt;
    }
    auto const owner = std::ranges::find_if(now.objects, [&](auto const& each) {
        return catalogue::isOf(each.second.type, collection->className) &&
               !entryIn(each.second, *collection, object).is_null();
    });
    if (owner == now.objects.end()) {
        return std::nullopt;
    }
    Value const entry = entryIn(owner->second, *collection, object);
    Operation const& operation = *owner->second.type->find(collection->remove);
    std::vector<Value> in;
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (operation.parameters[i].isIn) {
            bool const isTold = entry.is_object() && entry.contains(names[i]);
            in.push_back(isTold ? entry[std::string(names[i])] : Value(object.name.text()));
        }
    }
    return Step{Step::Kind::remove, owner->second.name, owner->second.type, &operation, std::move(in), {}, {}};
}

Value entryOf(Value const& told, std::string const& id)
{
    auto const refersTo = [&id](Value const& value) {
        return value.is_string() && value.get_ref<std::string const&>().ends_with(':' + id);
    };
    Value found;
    for (Value const& each : told) {
        bool const isEntry = refersTo(each) || (each.is_object() && std::ranges::any_of(each, refersTo));
        if (isEntry) {
            return each;
        }
        found = each.is_array() && found.is_null() ? entryOf(each, id) : found;
    }
    return found;
}

std::vector<Value> toldValues(Operation const& operation, Value const& told)
{
    std::vector<Value> values;
    if (operation.result != nullptr && operation.result->kind != Type::Kind::status) {
        values.push_back(told["result"]);
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!operation.parameters[i].isIn) {
            values.push_back(told[std::string(names[i])]);
        }
    }
    return values;
}

bool isUnder(std::string const& id, std::string const& owner)
{
    return id.size() > owner.size() + 1 && id.starts_with(owner) && id[owner.size()] == '/';
}

} // namespace trs::ctl
