// What else than setters changes what objects tell, and which reads take keys that are known: what names and types of
// operations do not say.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace trs::catalogue {

// What an object tells and changes an element at a time: a list, or what a read has for each key.
struct Collection {
    std::string_view className; // that declares all three
    std::string_view reader;
    std::string_view insert;
    std::string_view remove;
    std::string_view elementClass = {}; // of objects that are made so; else values, or objects that are there anyhow
    std::string_view whole = {};        // takes the list as a whole, or nothing, and then leaves no elements
};

std::span<Collection const> collections();
// Of this reader, and of objects of this class or a base of it; null when there is none.
Collection const* findCollection(Operation const& reader);
Collection const* findCollectionOf(Class const& element);

// What two operations switch between true and false.
struct Switch {
    std::string_view className;
    std::string_view reader;
    std::string_view on;
    std::string_view off;
};
// Null when there is none of this reader.
Switch const* findSwitch(Operation const& reader);

// Whether a class is another one or derives from it.
bool isOf(Class const* type, std::string_view base);

// The keys to try with a read that takes one: constants of its class, small numbers, or what another operation of the
// object tells, which `told` returns (null: it has not). Empty for reads whose keys nobody can know.
std::vector<Value> keysOf(Operation const& reader, std::function<Value const*(std::string_view operation)> const& told);

} // namespace trs::catalogue
