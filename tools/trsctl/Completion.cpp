#include "tools/trsctl/Completion.h"

#include "broker/PrintableText.h"
#include "catalogue/Limits.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/UnitWalk.h"
#include "tools/trsctl/Units.h"

#include <algorithm>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::ObjectName;
using catalogue::OperationKind;

constexpr std::chrono::milliseconds patience{700}; // with a unit, altogether
constexpr std::size_t mostCandidates = 2000;

// The objects that a unit tells of while a person waits.
std::vector<std::string> objectsOf(Program::Options options)
{
    options.timeout = static_cast<int>(patience.count());
    options.wait = 0;
    std::vector<std::string> found;
    std::ranges::transform(ObjectName::wellKnown(), std::back_inserter(found), &ObjectName::id);
    Target target;
    if (findTarget(options, found.front(), target) != ExitCode::good) {
        return found;
    }
    catalogue::Walk walk({.mostObjects = mostCandidates});
    walk.begin(target.name);
    TreflectHandlerState const running;
    walkUnit(walk, {[](catalogue::Visit const&) { return true; }, [](KeyedVisit const&) {}},
             std::chrono::steady_clock::now() + patience);
    for (catalogue::Walk::Object const& object : walk.objects()) {
        // What a terminal must not be shown cannot be typed either.
        if (std::string const name = object.name.text(); object.from != nullptr && escaped(name) == name) {
            found.push_back(name);
        }
    }
    return found;
}

std::vector<std::string> unitNames()
{
    std::vector<NamedUnit> units;
    readUnits(units);
    std::vector<std::string> names;
    std::ranges::transform(units, std::back_inserter(names), &NamedUnit::name);
    return names;
}

std::vector<std::string> unitLabels()
{
    std::vector<NamedUnit> units;
    readUnits(units);
    std::vector<std::string> labels;
    for (NamedUnit const& each : units) {
        std::ranges::copy(each.labels, std::back_inserter(labels));
    }
    return labels;
}

std::vector<std::string> classes()
{
    std::vector<std::string> names;
    names.reserve(catalogue::classes().size());
    for (Class const* const each : catalogue::classes()) {
        names.emplace_back(each->interface);
    }
    return names;
}

std::vector<catalogue::Operation const*> operationsOf(std::string const& object)
{
    ObjectName name;
    Class const* const type = ObjectName::parse(object, name).empty() ? catalogue::findClass(name.className) : nullptr;
    return type != nullptr ? type->operations() : std::vector<catalogue::Operation const*>();
}

std::vector<std::string> namesOf(std::vector<catalogue::Operation const*> const& operations)
{
    std::vector<std::string> names;
    names.reserve(operations.size());
    for (catalogue::Operation const* const each : operations) {
        names.emplace_back(each->name);
    }
    return names;
}

// Those of a kind, and what get and set call them by: mtu.
std::vector<std::string> namesOf(std::string const& object, OperationKind kind)
{
    std::vector<std::string> names;
    for (catalogue::Operation const* const each : operationsOf(object)) {
        if (kindOf(*each) == kind) {
            names.emplace_back(each->name);
            names.push_back(briefNameOf(*each));
        }
    }
    return names;
}

// "CLASS", and behind a dot its operations.
std::vector<std::string> classesOrOperations(std::string const& typed)
{
    std::size_t const dot = typed.find('.');
    Class const* const type = dot != std::string::npos ? catalogue::findClass(typed.substr(0, dot)) : nullptr;
    if (type == nullptr) {
        return classes();
    }
    std::vector<std::string> names;
    for (catalogue::Operation const* const each : type->operations()) {
        names.push_back(typed.substr(0, dot + 1) + std::string(each->name));
    }
    return names;
}

// What may stand behind "NAME=" of a value, or in its place: true and false, enumerators, and the constants that its
// limits name.
std::vector<std::string> valuesOf(catalogue::Operation const& operation, std::size_t parameter)
{
    catalogue::Type const& type = *operation.parameters[parameter].type;
    std::vector<std::string> values;
    if (type.kind == catalogue::Type::Kind::boolean) {
        values = {"true", "false"};
    }
    for (catalogue::Enumerator const& each : type.enumerators) {
        values.emplace_back(each.name);
    }
    for (catalogue::LimitedPart const& part : catalogue::limitedParts(operation)) {
        if (part.path == operation.parameterNames()[parameter]) {
            for (catalogue::NamedValue const& each : part.limit->names) {
                values.emplace_back(each.name);
            }
        }
    }
    return values;
}

// The arguments of an operation: parameter names with "=", and the values of the one that is typed, or comes next.
std::vector<std::string> argumentsOf(std::string const& object, std::string const& name, OperationKind kind,
                                     std::size_t given, std::string const& word)
{
    ObjectName named;
    Class const* const type =
        ObjectName::parse(object, named).empty() ? catalogue::findClass(named.className) : nullptr;
    catalogue::Operation const* const operation = type != nullptr ? catalogue::find(*type, name, kind) : nullptr;
    std::vector<std::string> found;
    if (operation == nullptr) {
        return found;
    }
    std::vector<std::string_view> const names = operation->parameterNames();
    std::size_t place = 0; // among the in-parameters
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!operation->parameters[i].isIn) {
            continue;
        }
        std::string const prefix = std::string(names[i]) + '=';
        std::vector<std::string> const values = valuesOf(*operation, i);
        if (word.starts_with(prefix)) {
            std::ranges::transform(values, std::back_inserter(found),
                                   [&prefix](std::string const& each) { return prefix + each; });
        } else {
            found.push_back(prefix);
        }
        if (place++ == given) {
            std::ranges::copy(values, std::back_inserter(found));
        }
    }
    return found;
}

// What was typed before the word to be completed.
struct Typed {
    tools::OptionTable const& table;
    tools::Verb const* verb = nullptr;
    std::vector<std::string> arguments = {}; // of the verb
    tools::Option const* open = nullptr;     // an option whose value comes next

    // The program's and the verb's.
    template <class Predicate>
    std::vector<tools::Option const*> options(Predicate isMeant) const
    {
        std::vector<tools::Option const*> found;
        auto const add = [&](std::vector<tools::Option> const& options) {
            for (tools::Option const& each : options) {
                if (isMeant(each)) {
                    found.push_back(&each);
                }
            }
        };
        add(table.options);
        if (verb != nullptr) {
            add(verb->options);
        }
        return found;
    }
};

tools::Verb const* findVerb(tools::OptionTable const& table, std::string const& name)
{
    auto const found = std::find_if(table.verbs.begin(), table.verbs.end(),
                                    [&](tools::Verb const& each) { return each.name == name; });
    return found != table.verbs.end() ? &*found : nullptr;
}

Typed read(tools::OptionTable const& table, std::vector<std::string> const& words, Program::Options& options)
{
    Typed typed{table};
    auto const take = [&](tools::Option const& option, std::string const& value) {
        options.unit = option.name == "--unit" ? value : options.unit;
    };
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        std::string const& word = words[i];
        std::size_t const equals = std::min(word.find('='), word.size());
        auto const named =
            typed.options([name = word.substr(0, equals)](tools::Option const& each) { return each.isCalled(name); });
        if (typed.open != nullptr) {
            take(*typed.open, word);
            typed.open = nullptr;
        } else if (!named.empty() && equals < word.size()) {
            take(*named.front(), word.substr(equals + 1));
        } else if (!named.empty()) {
            typed.open = named.front()->takesValue() ? named.front() : nullptr;
        } else if (typed.verb == nullptr) {
            typed.verb = findVerb(table, word);
        } else {
            typed.arguments.push_back(word);
        }
    }
    return typed;
}

// Values of an option.
std::vector<std::string> valuesOf(tools::Option const& option)
{
    return option.name == "--unit" ? unitNames() : option.name == "--selector" ? unitLabels() : option.choices;
}

std::vector<std::string> optionsOf(Typed const& typed)
{
    std::vector<std::string> names;
    auto const options = typed.options([](tools::Option const& each) { return !each.isArgument(); });
    std::ranges::transform(options, std::back_inserter(names),
                           [](auto const* each) { return std::string(each->longName()); });
    return names;
}

std::vector<std::string> verbsOf(tools::OptionTable const& table)
{
    std::vector<std::string> names;
    for (tools::Verb const& verb : table.verbs) {
        if (!verb.isHidden) {
            names.push_back(verb.name);
        }
    }
    return names;
}

// Arguments of a verb that comes before.
std::vector<std::string> argumentsOf(Typed const& typed, std::string const& word, Program::Options const& options)
{
    auto const places = typed.options([](tools::Option const& each) { return each.isArgument(); });
    if (places.empty()) {
        return {};
    }
    tools::Option const& place = *places[std::min(typed.arguments.size(), places.size() - 1)];
    std::string const object = typed.arguments.empty() ? "" : typed.arguments.front();
    OperationKind const kind = typed.verb->name == "set"   ? OperationKind::write
                               : typed.verb->name == "get" ? OperationKind::read
                                                           : OperationKind::execute;
    if (place.name == "OBJECT") {
        return objectsOf(options);
    }
    if (place.name == "OPERATION") {
        return namesOf(operationsOf(object));
    }
    if (place.name == "NAME") {
        return namesOf(object, kind == OperationKind::write ? kind : OperationKind::read);
    }
    if (place.name == "VALUE" && typed.arguments.size() >= 2) {
        return argumentsOf(object, typed.arguments[1], kind, typed.arguments.size() - 2, word);
    }
    return place.name == "CLASS"               ? classes()
           : place.name == "CLASS[.OPERATION]" ? classesOrOperations(word)
                                               : place.choices;
}

std::vector<std::string> candidates(Typed const& typed, std::string const& word, Program::Options const& options)
{
    return typed.open != nullptr   ? valuesOf(*typed.open)
           : word.starts_with('-') ? optionsOf(typed)
           : typed.verb == nullptr ? verbsOf(typed.table)
                                   : argumentsOf(typed, word, options);
}

} // namespace

std::vector<std::string> completions(Program& program, std::vector<std::string> const& words)
{
    std::string const word = words.empty() ? "" : words.back();
    Program::Options options = program.shared();
    Typed const typed = read(program.table(), words, options);
    std::vector<NamedUnit> chosen;
    if (chooseUnits({options.unit}, "", chosen).empty()) {
        options.unit = chosen.front().endpoint; // of a name
    }
    std::vector<std::string> found = candidates(typed, word, options);
    std::set<std::string> seen;
    std::erase_if(found, [&](std::string const& each) {
        return each.empty() || !each.starts_with(word) || !seen.insert(each).second;
    });
    return found;
}

} // namespace trs::ctl
