#include "unit/Facts.h"

#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "platform/TipprmiStream.h"

#include <algorithm>
#include <cstdint>

namespace trs::sim {

namespace {

using catalogue::Value;

// The one thing that an operation tells, or is given.
struct Told {
    std::string name;
    catalogue::Type const& type;
};

Told onlyOne(catalogue::Operation const& operation, bool isIn)
{
    if (!isIn && operation.result != nullptr && operation.result->kind != catalogue::Type::Kind::status) {
        return {"result", *operation.result};
    }
    auto const found = std::ranges::find(operation.parameters, isIn, &catalogue::Parameter::isIn);
    auto const place = static_cast<std::size_t>(found - operation.parameters.begin());
    return {std::string(operation.parameterNames()[place]), *found->type};
}

} // namespace

std::string const Facts::unknown = "unknown";

void Facts::add(Fact fact)
{
    auto const found = std::ranges::find(facts_, fact.name, &Fact::name);
    if (found != facts_.end()) {
        *found = std::move(fact);
    } else {
        facts_.push_back(std::move(fact));
    }
}

void Facts::add(std::string_view name, bool& variable)
{
    add({name, [&variable] { return Value(variable); },
         [&variable](Value const& value) {
             if (value.is_null()) {
                 return std::string();
             }
             if (!value.is_boolean()) {
                 return catalogue::toJson(value, -1) + " is neither true nor false";
             }
             variable = value.get<bool>();
             return std::string();
         }});
}

void Facts::add(std::string_view name, std::string& variable)
{
    add({name, [&variable] { return Value(variable); },
         [&variable](Value const& value) {
             if (value.is_null()) {
                 return std::string();
             }
             if (!value.is_string()) {
                 return catalogue::toJson(value, -1) + " is no text";
             }
             variable = value.get<std::string>();
             return std::string();
         }});
}

void Facts::addVariable(catalogue::Operation const& operation, catalogue::Operation const* setter, Write write,
                        Read read)
{
    bool const isIn = setter == &operation;
    add({operation.name,
         [&operation, isIn, write = std::move(write)] {
             Told const told = onlyOne(operation, isIn);
             TipprmiStream stream(100);
             write(stream);
             return Value{{told.name, catalogue::readValue(stream, told.type)}};
         },
         [&operation, setter, isIn, read = std::move(read)](Value const& value) {
             if (value.is_null()) {
                 return std::string();
             }
             Told const told = onlyOne(operation, isIn);
             if (!value.is_object()) {
                 return std::string("the results are no object");
             }
             if (!value.contains(told.name)) {
                 return told.name + " is missing";
             }
             if (value.size() != 1) {
                 return std::string("one result too many");
             }
             TipprmiStream stream(100);
             std::string wrong = catalogue::writeValue(stream, told.type, value[told.name]);
             if (!wrong.empty()) {
                 return told.name + (wrong.front() == '.' || wrong.front() == '[' ? "" : ": ") + wrong;
             }
             if (setter != nullptr && catalogue::hasLimits(*setter)) {
                 auto const beyond = catalogue::violations(*setter, {&value[told.name], 1}, 1);
                 if (!beyond.empty()) {
                     return beyond.front().text();
                 }
             }
             return read(stream) ? std::string()
                                 : told.name + ": " + catalogue::toJson(value[told.name], -1) + " is refused";
         }});
}

bool Facts::knows(std::string const& name) const
{
    return std::ranges::find(facts_, name, &Fact::name) != facts_.end() ||
           std::ranges::find(aliases_, name, &std::pair<std::string_view, std::string_view>::first) != aliases_.end() ||
           std::ranges::any_of(others_, [&name](Others const& each) { return each.knows(name); });
}

Value Facts::say() const
{
    Value object = Value::object();
    for (Fact const& fact : facts_) {
        if (Value said = fact.say(); !said.is_null()) {
            object[std::string(fact.name)] = std::move(said);
        }
    }
    for (Others const& others : others_) {
        others.say(object);
    }
    return object;
}

std::string Facts::take(std::string const& name, Value const& value)
{
    auto const found = std::ranges::find(facts_, name, &Fact::name);
    if (found != facts_.end()) {
        return found->take(value);
    }
    auto const alias = std::ranges::find(aliases_, name, &std::pair<std::string_view, std::string_view>::first);
    if (alias != aliases_.end()) {
        return take(std::string(alias->second), value);
    }
    auto const others = std::ranges::find_if(others_, [&name](Others const& each) { return each.knows(name); });
    return others != others_.end() ? others->take(name, value) : unknown;
}

void Facts::forgetBut(Value const& named)
{
    for (Fact const& fact : facts_) {
        if (!named.contains(std::string(fact.name))) {
            fact.take(nullptr);
        }
    }
    for (Others const& others : others_) {
        others.forget();
    }
}

} // namespace trs::sim
