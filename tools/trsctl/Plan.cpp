#include "tools/trsctl/Plan.h"

#include "catalogue/Collections.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Json.h"
#include "catalogue/OperationKind.h"
#include "catalogue/ValueText.h"
#include "tools/trsctl/Creation.h"
#include "tools/trsctl/Words.h"

#include <algorithm>
#include <map>
#include <optional>

namespace trs::ctl {

namespace {

using catalogue::Collection;
using catalogue::Operation;
using catalogue::OperationKind;
using catalogue::Type;
using catalogue::Value;

bool takesKeys(Operation const& operation) { return !catalogue::typesOf(operation, true).empty(); }

std::vector<Value> keysIn(Operation const& operation, Value const& told)
{
    std::vector<Value> keys;
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (operation.parameters[i].isIn) {
            keys.push_back(told[std::string(names[i])]);
        }
    }
    return keys;
}

// A part of a value that has such a type, the first that is not zero; null when there is none.
Value partOf(Type const& type, Value const& value, Type const& wanted)
{
    if (&type == &wanted) {
        return value;
    }
    Value found;
    for (catalogue::Field const& field : type.fields) {
        Value part = value.is_object() && value.contains(field.name)
                         ? partOf(*field.type, value[std::string(field.name)], wanted)
                         : Value();
        if (!part.is_null() && (found.is_null() || found == catalogue::zero(wanted))) {
            found = std::move(part);
        }
    }
    return found;
}

class Planner {
public:
    Planner(UnitState const& wanted, UnitState const& now) : wanted_(wanted), now_(now) {}

    Plan make()
    {
        for (auto const& [id, object] : wanted_.objects) {
            if (object.isThere && !now_.has(id)) {
                create(object);
            }
        }
        for (auto const& [id, object] : wanted_.objects) {
            if (object.isThere && now_.has(id)) {
                compare(object, *now_.find(id));
            }
        }
        for (auto const& [id, object] : now_.objects) {
            if (object.isThere && isDoomed(id)) {
                remove(object, wanted_.find(id) != nullptr);
            }
        }
        Plan plan{std::move(creations_), std::move(facts_)};
        std::ranges::move(settings_, std::back_inserter(plan.steps));
        std::ranges::move(removals_, std::back_inserter(plan.steps));
        return plan;
    }

private:
    // Creates an object, or leaves it to the creation of the one that it is a part of.
    void create(UnitState::Object const& object)
    {
        bool const isPart = std::ranges::any_of(wanted_.objects, [&](auto const& each) {
            return each.second.isThere && !now_.has(each.first) && isUnder(object.name.id, each.first) &&
                   catalogue::findCollectionOf(*each.second.type) != nullptr;
        });
        if (isPart) {
            return;
        }
        if (std::optional<Step> step = creationOf(object, wanted_, now_)) {
            creations_.push_back(std::move(*step));
        } else {
            facts_.push_back({object.name.text(), true, nullptr});
        }
    }

    void compare(UnitState::Object const& object, UnitState::Object const& now)
    {
        for (UnitState::Reading const& reading : object.readings) {
            UnitState::Reading const* const former = now.find(*reading.operation);
            Value const told = former != nullptr ? former->told : Value();
            if (told == reading.told) {
                continue;
            }
            Collection const* const collection = catalogue::findCollection(*reading.operation);
            if (collection != nullptr && !collection->elementClass.empty()) {
                continue; // which its elements decide
            }
            if (collection != nullptr) {
                compareElements(object, reading, told, *collection);
            } else if (takesKeys(*reading.operation)) {
                compareEntries(object, reading, told);
            } else if (catalogue::Switch const* const turn = catalogue::findSwitch(*reading.operation)) {
                bool const isOn = toldValues(*reading.operation, reading.told).front() == true;
                settings_.push_back(step(object, isOn ? turn->on : turn->off, {}, told));
            } else {
                set(object, reading, told);
            }
        }
    }

    static Step step(UnitState::Object const& object, std::string_view operation, std::vector<Value> in,
                     Value before = {}, Step::Kind kind = Step::Kind::set)
    {
        return {kind, object.name, object.type, object.type->find(operation), std::move(in), std::move(before), {}};
    }

    void set(UnitState::Object const& object, UnitState::Reading const& reading, Value const& told)
    {
        if (Operation const* const writer = writerOf(*object.type, *reading.operation)) {
            settings_.push_back(step(object, writer->name, toldValues(*reading.operation, reading.told), told));
        } else if (reading.operation->name == "getValues" && object.type->find("init") != nullptr) {
            settings_.push_back(step(object, "init", toldValues(*reading.operation, reading.told), told));
        } else {
            noteFact(object, reading, told);
        }
    }

    // Of a read that takes keys, whose setter takes them too.
    void compareEntries(UnitState::Object const& object, UnitState::Reading const& reading, Value const& told)
    {
        Operation const* const writer = writerOf(*object.type, *reading.operation);
        for (Value const& entry : reading.told) {
            bool const isSame = std::ranges::find(told, entry) != told.end();
            if (isSame) {
                continue;
            }
            if (writer == nullptr) {
                facts_.push_back({object.name.text() + ' ' + std::string(reading.operation->name), entry, told});
                continue;
            }
            std::vector<Value> in = keysIn(*reading.operation, entry);
            std::ranges::move(toldValues(*reading.operation, entry), std::back_inserter(in));
            settings_.push_back(step(object, writer->name, std::move(in)));
        }
    }

    void compareElements(UnitState::Object const& object, UnitState::Reading const& reading, Value const& told,
                         Collection const& collection)
    {
        bool const isKeyed = takesKeys(*reading.operation);
        Value const wanted = isKeyed ? reading.told : toldValues(*reading.operation, reading.told).front();
        Value const former = told.is_null() ? Value::array()
                             : isKeyed      ? told
                                            : toldValues(*reading.operation, told).front();
        auto const has = [](Value const& list, Value const& element) {
            return std::ranges::find(list, element) != list.end();
        };
        Type const& list = *catalogue::typesOf(*reading.operation, false).front();
        Value missing = Value::array();
        std::ranges::copy_if(wanted, std::back_inserter(missing),
                             [&](Value const& each) { return !has(former, each); });
        Value surplus = Value::array();
        std::ranges::copy_if(former, std::back_inserter(surplus), [&](Value const& each) {
            bool const isSet = isKeyed && std::ranges::any_of(wanted, [&](Value const& other) {
                                   return keysIn(*reading.operation, each) == keysIn(*reading.operation, other);
                               });
            return !has(wanted, each) && !isSet;
        });
        bool const isReset = collection.remove.empty() && !surplus.empty();
        if (isReset) {
            creations_.push_back(step(object, collection.whole, {}, {}, Step::Kind::remove));
            missing = wanted;
        }
        addElements(object, collection.insert, list, missing, creations_, Step::Kind::create, isKeyed);
        if (!collection.remove.empty()) {
            addElements(object, collection.remove, list, surplus, surplusRoom(isKeyed), Step::Kind::remove, isKeyed);
        }
        bool const isReordered = missing.empty() && surplus.empty() && !isKeyed;
        if (isReordered && !collection.whole.empty()) {
            settings_.push_back(step(object, collection.whole, {wanted}, told));
        } else if (isReordered) {
            noteFact(object, reading, told);
        }
    }

    // Where the removals of elements go: before creations, which may take their places.
    std::vector<Step>& surplusRoom(bool isKeyed) { return isKeyed ? removals_ : creations_; }

    // Calls that take elements, each or all at once.
    static void addElements(UnitState::Object const& object, std::string_view name, Type const& list,
                            Value const& elements, std::vector<Step>& steps, Step::Kind kind, bool isKeyed)
    {
        Operation const& operation = *object.type->find(name);
        std::vector<Type const*> const types = catalogue::typesOf(operation, true);
        if (elements.empty()) {
            return;
        }
        if (types.size() == 1 && types.front() == &list && !isKeyed) {
            steps.push_back(step(object, name, {elements}, {}, kind));
            return;
        }
        std::vector<Step> made;
        for (Value const& element : elements) {
            std::vector<Value> in;
            std::vector<std::string_view> const names = operation.parameterNames();
            for (std::size_t i = 0; i < names.size(); ++i) {
                if (operation.parameters[i].isIn) {
                    in.push_back(argumentFrom(element, isKeyed ? nullptr : list.element, *operation.parameters[i].type,
                                              names[i]));
                }
            }
            made.push_back(step(object, name, std::move(in), {}, kind));
        }
        // What is removed goes first.
        steps.insert(kind == Step::Kind::remove ? steps.begin() : steps.end(), made.begin(), made.end());
    }

    // An argument of a call about an element: the element, or its part of that name or type.
    static Value argumentFrom(Value const& element, Type const* type, Type const& wanted, std::string_view name)
    {
        if (type == &wanted) {
            return element;
        }
        if (element.is_object() && element.contains(name)) {
            return element[std::string(name)];
        }
        Value const part = type != nullptr ? partOf(*type, element, wanted) : Value();
        return part.is_null() ? catalogue::zero(wanted) : part;
    }

    // Whether an object is not to be, that is there.
    bool isDoomed(std::string const& id) const
    {
        UnitState::Object const* const named = wanted_.find(id);
        return named != nullptr ? !named->isThere : wanted_.isComplete;
    }

    // Removes an object, or leaves it to the removal of the one that it is a part of.
    void remove(UnitState::Object const& object, bool isNamed)
    {
        bool const isPart = std::ranges::any_of(now_.objects, [&](auto const& each) {
            return isDoomed(each.first) && isUnder(object.name.id, each.first) &&
                   catalogue::findCollectionOf(*each.second.type) != nullptr;
        });
        if (isPart) {
            return;
        }
        if (std::optional<Step> step = removalOf(object, now_)) {
            removals_.push_back(std::move(*step));
            return;
        }
        bool const isEffect = !isNamed && std::ranges::none_of(object.type->operations(), [](Operation const* each) {
            return kindOf(*each) == OperationKind::write;
        });
        if (!isEffect) {
            facts_.push_back({object.name.text(), nullptr, true});
        }
    }

    // Each place of a reading that differs.
    void noteFact(UnitState::Object const& object, UnitState::Reading const& reading, Value const& told)
    {
        std::map<std::string, std::pair<Value, Value>> leaves;
        catalogue::forEachLeaf(reading.told,
                               [&](std::string const& path, Value const& leaf) { leaves[path].first = leaf; });
        catalogue::forEachLeaf(told, [&](std::string const& path, Value const& leaf) { leaves[path].second = leaf; });
        for (auto const& [path, both] : leaves) {
            if (both.first != both.second) {
                facts_.push_back(
                    {object.name.text() + ' ' + std::string(reading.operation->name) + (path.empty() ? "" : '.' + path),
                     both.first, both.second});
            }
        }
    }

    UnitState const& wanted_;
    UnitState const& now_;
    std::vector<Step> creations_;
    std::vector<Step> settings_;
    std::vector<Step> removals_;
    std::vector<Unsettable> facts_;
};

} // namespace

std::string Step::text() const
{
    std::string line = shellWord(object.text()) + ' ' + std::string(operation->name);
    std::vector<std::string_view> const names = operation->parameterNames();
    std::size_t used = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (operation->parameters[i].isIn) {
            line += ' ' + shellWord(std::string(names[i]) + '=' + catalogue::textOf(in[used++]));
        }
    }
    return line;
}

Value Step::json() const
{
    constexpr char const* kinds[] = {"create", "set", "remove"};
    Value value{{"change", kinds[static_cast<int>(kind)]}, {"object", object.text()}, {"operation", operation->name}};
    std::vector<std::string_view> const names = operation->parameterNames();
    std::size_t used = 0;
    value["arguments"] = Value::object();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (operation->parameters[i].isIn) {
            value["arguments"][std::string(names[i])] = in[used++];
        }
    }
    if (!before.is_null()) {
        value["before"] = before;
    }
    return value;
}

std::vector<Value> Step::arguments() const
{
    std::vector<Value> values = in;
    std::size_t used = 0;
    for (catalogue::Parameter const& each : operation->parameters) {
        if (each.isIn) {
            catalogue::resolveConstants(*type, *operation, *each.type, values[used++]);
        }
    }
    return values;
}

Plan makePlan(UnitState const& wanted, UnitState const& now) { return Planner(wanted, now).make(); }

} // namespace trs::ctl
