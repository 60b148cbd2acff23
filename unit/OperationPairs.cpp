#include "unit/OperationPairs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <span>
#include <string_view>

namespace trs::sim {

namespace {

using catalogue::Operation;
using catalogue::Type;

using Prefixes = std::span<std::string_view const>;

constexpr std::array<std::string_view, 5> readingPrefixes{"get", "is", "has", "Get", "internalGet"};
constexpr std::array<std::string_view, 3> settingPrefixes{"internalSet", "set", "update"};

// What an operation is about: "Mtu" of getMtu and setMtu. None for one without such a prefix.
std::optional<std::string_view> subjectOf(Operation const& operation, Prefixes prefixes)
{
    for (std::string_view const prefix : prefixes) {
        if (operation.name.starts_with(prefix)) {
            return operation.name.substr(prefix.size());
        }
    }
    return std::nullopt;
}

bool isSame(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other,
                              [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

} // namespace

bool isReader(Operation const& operation) { return subjectOf(operation, readingPrefixes).has_value(); }

bool isSetter(Operation const& operation) { return subjectOf(operation, settingPrefixes).has_value(); }

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

Operation const* readerOf(catalogue::Class const& type, Operation const& setter)
{
    auto const subject = subjectOf(setter, settingPrefixes);
    std::vector<Type const*> const given = typesOf(setter, true);
    for (Operation const* const candidate : type.operations()) {
        auto const read = subjectOf(*candidate, readingPrefixes);
        if (!subject || !read || !isSame(*read, *subject)) {
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

Operation const* setterOf(catalogue::Class const& type, Operation const& reader)
{
    for (Operation const* const candidate : type.operations()) {
        if (isSetter(*candidate) && readerOf(type, *candidate) == &reader) {
            return candidate;
        }
    }
    return nullptr;
}

} // namespace trs::sim
