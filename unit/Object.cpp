#include "unit/Object.h"

#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "catalogue/OperationKind.h"
#include "platform/TipprmiStream.h"
#include "unit/Journal.h"

namespace trs::sim {

namespace {

// The in-arguments by name.
catalogue::Value named(catalogue::Operation const& operation, std::vector<catalogue::Value> const& arguments)
{
    catalogue::Value all = catalogue::Value::object();
    std::vector<std::string_view> const names = operation.parameterNames();
    std::size_t place = 0;
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (operation.parameters[i].isIn && place < arguments.size()) {
            all[std::string(names[i])] = arguments[place++];
        }
    }
    return all;
}

} // namespace

Object::Object(Inventory& inventory, std::string const& id, std::string_view className, Origin origin)
    : inventory_(inventory), id_(id), type_(*catalogue::findClass(className)), origin_(origin), servant_(TipprmiOID(id))
{
    facts_.add(Facts::Others{[this](catalogue::Value& object) {
                                 for (auto const& [operation, results] : forced_) {
                                     object[std::string(operation->name)] = results;
                                 }
                             },
                             [](std::string const&) { return false; },
                             [](std::string const&, catalogue::Value const&) { return Facts::unknown; },
                             [this] { forced_.clear(); }});
    servant_.instead([this](unsigned long classId, unsigned long opIndex, auto& request, auto& reply) {
        return answerFirst(classId, opIndex, request, reply);
    });
    inventory_.add(*this);
}

void Object::holdsEntries(catalogue::Operation const& reader, catalogue::Operation const& setter,
                          std::function<std::vector<Values>()> keys, std::function<void()> clear)
{
    facts_.add({reader.name,
                [this, &reader, keys = std::move(keys)]() -> catalogue::Value {
                    catalogue::Value list = catalogue::Value::array();
                    for (Values const& arguments : keys()) {
                        catalogue::Value element = named(reader, arguments);
                        element.update(catalogue::call(proxy<TipprmiObjectClient>(), reader, arguments).results);
                        list.push_back(std::move(element));
                    }
                    return list.empty() ? catalogue::Value() : list;
                },
                [this, &setter, clear = std::move(clear)](catalogue::Value const& list) {
                    if (!list.is_null() && !list.is_array()) {
                        return std::string("the entries are no array");
                    }
                    clear();
                    for (catalogue::Value const& element : list) {
                        if (std::string wrong = setEntry(setter, element); !wrong.empty()) {
                            return wrong;
                        }
                    }
                    return std::string();
                }});
}

// Has the setter set what an element says. Empty, or what is wrong with it.
std::string Object::setEntry(catalogue::Operation const& setter, catalogue::Value const& element) const
{
    Values arguments;
    std::vector<std::string_view> const names = setter.parameterNames();
    for (std::string_view const name : names) {
        if (!element.is_object() || !element.contains(std::string(name))) {
            return std::string(name) + " is missing";
        }
        arguments.push_back(element[std::string(name)]);
    }
    catalogue::Outcome const outcome = catalogue::call(proxy<TipprmiObjectClient>(), setter, arguments);
    return outcome.kind == catalogue::Outcome::Kind::done    ? ""
           : outcome.kind == catalogue::Outcome::Kind::wrong ? outcome.wrong
                                                             : "refuses " + catalogue::toJson(element, -1);
}

bool Object::answerFirst(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    catalogue::Operation const* const operation =
        catalogue::findOperation(static_cast<std::uint32_t>(classId), static_cast<std::uint32_t>(opIndex));
    if (operation == nullptr) {
        return false;
    }
    if (catalogue::hasLimits(*operation) && refuse(*operation, request, reply)) {
        return true;
    }
    if (catalogue::kindOf(*operation) != catalogue::OperationKind::read) {
        changed();
    }
    return !forced_.empty() && answerForced(*operation, request, reply);
}

// Refuses a call whose arguments are beyond their limits: by a status of failure, false, or nothing.
bool Object::refuse(catalogue::Operation const& operation, TipprmiStream& request, TipprmiStream& reply)
{
    TipprmiStream given(100);
    given.marshall(request.data() + request.size() - request.available(), static_cast<int>(request.available()));
    Values arguments;
    for (catalogue::Type const* const type : catalogue::typesOf(operation, true)) {
        arguments.push_back(catalogue::readValue(given, *type));
    }
    if (given.hasUnmarshallingFailed()) {
        return false; // which is told by those who carry it out
    }
    std::vector<catalogue::Violation> const beyond = catalogue::violations(operation, arguments, 1);
    if (beyond.empty()) {
        return false;
    }
    say(id_ + ' ' + std::string(operation.name) + " refused: " + beyond.front().text());
    request.rewind(request.size());
    if (operation.result != nullptr && operation.result->kind == catalogue::Type::Kind::status) {
        catalogue::writeStatus(reply, false);
    } else if (operation.result != nullptr) {
        catalogue::writeValue(reply, *operation.result, catalogue::zero(*operation.result));
    }
    for (catalogue::Parameter const& parameter : operation.parameters) {
        if (!parameter.isIn) {
            catalogue::writeValue(reply, *parameter.type, catalogue::zero(*parameter.type));
        }
    }
    return true;
}

std::string Object::force(catalogue::Operation const& reader, catalogue::Value const& results)
{
    TipprmiStream tried(100);
    std::string wrong = catalogue::writeResults(tried, reader, results);
    if (wrong.empty()) {
        forced_[&reader] = results;
        changed();
    }
    return wrong;
}

bool Object::answerForced(catalogue::Operation const& operation, TipprmiStream& request, TipprmiStream& reply) const
{
    auto const found = forced_.find(&operation);
    if (found == forced_.end()) {
        return false;
    }
    if (request.available() != 0) {
        request.fail();
    }
    catalogue::writeResults(reply, operation, found->second);
    return true;
}

} // namespace trs::sim
