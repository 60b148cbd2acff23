#define HEADERS
#include "catalogue/Classes.inc" // made by classes.awk
#undef HEADERS
#include "catalogue/Describe.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fmt/format.h>
#include <map>

namespace trs::catalogue {

namespace {

constexpr std::array allClasses{
#define CLASS(Name) &describe::described<Name>,
#define CLASSES
#include "catalogue/Classes.inc"
#undef CLASSES
#undef CLASS
};

struct Declaration {
    std::string_view className;
    std::string_view operation;
    std::string_view parameterNames;
    std::string_view comment;
};

constexpr Declaration declarations[] = {
#include "catalogue/Declarations.inc" // made by declarations.awk
};

struct FieldComment {
    std::string_view record;
    std::string_view field;
    std::string_view comment;
};

constexpr FieldComment fieldComments[] = {
#include "catalogue/Fields.inc" // made by constants.awk
};

Declaration const& declarationOf(Operation const& operation)
{
    using Key = std::pair<std::string_view, std::string_view>;
    static auto const found = [] {
        std::map<Key, Declaration const*> table;
        for (Declaration const& declaration : declarations) {
            table.emplace(Key{declaration.className, declaration.operation}, &declaration);
        }
        return table;
    }();
    static constexpr Declaration none{};
    auto const entry = found.find({operation.className, operation.name});
    return entry != found.end() ? *entry->second : none;
}

// What a comment says that numbers are counted in: "in octets", "in cells per second".
std::string_view unitIn(std::string_view comment)
{
    constexpr std::string_view units[] = {"octets",  "cells per second", "kbit/s",
                                          "seconds", "milliseconds",     "microseconds"};
    constexpr std::string_view word = " in ";
    for (std::size_t at = comment.find(word); at != std::string_view::npos; at = comment.find(word, at + 1)) {
        std::string_view const rest = comment.substr(at + word.size());
        for (std::string_view const unit : units) {
            bool const isWhole =
                rest.size() == unit.size() ||
                (rest.size() > unit.size() && std::isalnum(static_cast<unsigned char>(rest[unit.size()])) == 0);
            if (rest.starts_with(unit) && isWhole) {
                return unit;
            }
        }
    }
    return {};
}

} // namespace

std::string Type::text() const
{
    switch (kind) {
    case Kind::array:
        return fmt::format("TipprmiArray<{}, {}>", element->text(), count);
    case Kind::sequence:
        return fmt::format("TipprmiSequence<{}>", element->text());
    case Kind::status:
        return fmt::format("ResponseInfo<{}>", name);
    default:
        return std::string(name);
    }
}

std::string_view Type::commentOf(std::string_view field) const
{
    auto const* const found = std::ranges::find_if(
        fieldComments, [&](FieldComment const& each) { return each.record == name && each.field == field; });
    return found != std::end(fieldComments) ? found->comment : std::string_view();
}

std::vector<std::string_view> Operation::parameterNames() const
{
    std::vector<std::string_view> names;
    for (std::string_view rest = declarationOf(*this).parameterNames; !rest.empty();) {
        std::size_t const length = std::min(rest.find(' '), rest.size());
        names.push_back(rest.substr(0, length));
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    return names;
}

std::string_view Operation::comment() const { return declarationOf(*this).comment; }

std::string_view Operation::unitOf(Parameter const& parameter) const
{
    bool const isNumber = parameter.type->kind >= Type::Kind::octet && parameter.type->kind <= Type::Kind::unsigned32;
    return isNumber ? unitIn(comment()) : std::string_view();
}

std::string Operation::signature() const
{
    std::string text = (result != nullptr ? result->text() : "void") + ' ' + std::string(name) + '(';
    std::vector<std::string_view> const names = parameterNames();
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        text += (i == 0 ? "" : ", ") + std::string(parameters[i].isIn ? "in " : "out ") + parameters[i].type->text();
        text += i < names.size() ? ' ' + std::string(names[i]) : std::string();
    }
    return text + ')';
}

Class const* Class::base() const { return findClass(baseName); }

Operation const* Class::find(std::string_view operation) const
{
    auto const found = std::ranges::find(own, operation, &Operation::name);
    if (found != own.end()) {
        return &*found;
    }
    Class const* const parent = base();
    return parent != nullptr ? parent->find(operation) : nullptr;
}

std::vector<Operation const*> Class::operations() const
{
    Class const* const parent = base();
    std::vector<Operation const*> list = parent != nullptr ? parent->operations() : std::vector<Operation const*>();
    for (Operation const& operation : own) {
        list.push_back(&operation);
    }
    return list;
}

std::span<Class const* const> classes() { return allClasses; }

Class const* findClass(std::string_view name)
{
    auto const* const found = std::ranges::find_if(
        allClasses, [name](Class const* candidate) { return candidate->name == name || candidate->interface == name; });
    return found != allClasses.end() ? *found : nullptr;
}

Class const* findClass(std::uint32_t id)
{
    static auto const byId = [] {
        auto sorted = allClasses;
        std::ranges::sort(sorted, {}, &Class::id);
        return sorted;
    }();
    auto const* const found = std::ranges::lower_bound(byId, id, {}, &Class::id);
    return found != byId.end() && (*found)->id == id ? *found : nullptr;
}

Operation const* findOperation(std::uint32_t classId, std::uint32_t index)
{
    Class const* const type = findClass(classId);
    if (type == nullptr) {
        return nullptr;
    }
    auto const found = std::ranges::lower_bound(type->own, index, {}, &Operation::index);
    return found != type->own.end() && found->index == index ? &*found : nullptr;
}

} // namespace trs::catalogue
