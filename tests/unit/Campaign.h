// Calls at random of whatever a simulated unit has.
#pragma once

#include "catalogue/Call.h"
#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "catalogue/ObjectName.h"
#include "catalogue/OperationKind.h"
#include "unit/Object.h"
#include "unit/Unit.h"

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

// The same seed makes the same calls.
class Campaign {
public:
    using Value = trs::catalogue::Value;
    using Type = trs::catalogue::Type;
    using Operation = trs::catalogue::Operation;

    Campaign(trs::sim::Unit& unit, unsigned long seed) : unit_(unit), random_(seed) {}

    // Calls any operation of any object; most arguments are within their limits. What was called, for people.
    std::string call()
    {
        std::vector<trs::sim::Object*> const all = inOrder(unit_.inventory().all());
        trs::sim::Object const& object = *all[below(all.size())];
        std::vector<Operation const*> const operations = object.type().operations();
        Operation const& operation = *operations[below(operations.size())];
        std::vector<Value> in;
        for (trs::catalogue::Parameter const& parameter : operation.parameters) {
            if (parameter.isIn) {
                in.push_back(any(*parameter.type));
            }
        }
        if (below(8) != 0) {
            trs::catalogue::bringWithin(operation, in);
        }
        if (operation.name == "advance") { // in small steps, as counters begin anew after a day
            in = {below(2000)};
        }
        std::string const text = trs::catalogue::ObjectName{std::string(object.type().name), object.id()}.text() + ' ' +
                                 std::string(operation.name) + ' ' + trs::catalogue::toJson(in, -1);
        trs::catalogue::call(TipprmiObjectClient(TipprmiOID(object.id())), operation, in);
        return text;
    }

    // What all operations tell that take nothing.
    static Value told(trs::sim::Unit& unit)
    {
        Value told = Value::object();
        for (trs::sim::Object const* const object : inOrder(unit.inventory().all())) {
            for (Operation const* const operation : object->type().operations()) {
                if (trs::catalogue::isPlainRead(*operation) && operation->name != "getScenario" &&
                    operation->name != "getCallCount") {
                    told[object->id()][std::string(operation->name)] =
                        trs::catalogue::call(TipprmiObjectClient(TipprmiOID(object->id())), *operation, {}).results;
                }
            }
        }
        return told;
    }

    // Of two units that hold the same, objects may have been created in another order.
    static std::vector<trs::sim::Object*> inOrder(std::vector<trs::sim::Object*> objects)
    {
        std::ranges::sort(objects, {}, &trs::sim::Object::id);
        return objects;
    }

private:
    std::size_t below(std::size_t count) { return random_() % count; }

    Value any(Type const& type)
    {
        switch (type.kind) {
        case Type::Kind::boolean:
            return below(2) == 1;
        case Type::Kind::text: {
            static constexpr std::string_view texts[] = {
                "", "x", "input", "10.1.0.7", "2", "btsId", "10.0.0.9", "btsIpPrimary", "100", "atm1", "a\x01\n", "é"};
            return texts[below(std::size(texts))];
        }
        case Type::Kind::array:
            if (type.count == 4 && type.element->kind == Type::Kind::int16) {
                return anyAddress();
            }
            return Value(anyOnes(*type.element, type.count));
        case Type::Kind::sequence:
            return Value(anyOnes(*type.element, below(4)));
        case Type::Kind::object:
            return anyObject(type);
        case Type::Kind::record: {
            Value record = Value::object();
            for (trs::catalogue::Field const& field : type.fields) {
                record[std::string(field.name)] = any(*field.type);
            }
            return record;
        }
        case Type::Kind::enumeration:
            return type.enumerators.empty() ? 1 : type.enumerators[below(type.enumerators.size())].value;
        case Type::Kind::octet:
            return below(256);
        default: {
            static constexpr int numbers[] = {0, 0, 1, 1, 2, 3, 4, 5, 8, 15, 16, 65, 100, 200, 255, 300, 1400, 32767};
            return numbers[below(std::size(numbers))];
        }
        }
    }
    Value anyAddress()
    {
        static constexpr std::string_view addresses[] = {"0.0.0.0",  "10.1.0.7",      "10.1.0.254", "10.2.0.0",
                                                         "10.3.0.7", "255.255.255.0", "10.100.0.9", "255.255.0.0",
                                                         "10.3.0.0", "192.168.255.1", "10.2.0.128"};
        return addresses[below(std::size(addresses))];
    }
    std::vector<Value> anyOnes(Type const& type, std::size_t count)
    {
        std::vector<Value> values(count);
        std::ranges::generate(values, [&] { return any(type); });
        return values;
    }
    // Mostly one of the class, now and then one that is nowhere, or none.
    Value anyObject(Type const& type)
    {
        std::vector<trs::sim::Object*> const those = inOrder(unit_.inventory().related("", type.name));
        if (those.empty() || below(6) == 0) {
            return below(2) == 0 ? Value() : Value(trs::catalogue::ObjectName{std::string(type.name), "Nobody"}.text());
        }
        trs::sim::Object const& object = *those[below(those.size())];
        return trs::catalogue::ObjectName{std::string(object.type().name), object.id()}.text();
    }

    trs::sim::Unit& unit_;
    std::mt19937 random_;
};
