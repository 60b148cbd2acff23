// The objects of the simulated unit, by their classes, and the time they share.
#pragma once

#include "catalogue/Class.h"
#include "rmi/NameOf.h"
#include "unit/Clock.h"

#include <string>
#include <vector>

namespace trs::sim {

class Managed;

class Inventory {
public:
    // With another seed, numbers that have no reason to be the same in all units are others; with the same one, the
    // same.
    explicit Inventory(unsigned long seed = 0) : seed_(seed) {}
    Inventory(Inventory const&) = delete;
    Inventory& operator=(Inventory const&) = delete;

    struct Entry {
        std::string id;
        catalogue::Class const* type;
        Managed* managed; // null for the services that belong to another object
    };

    void add(std::string const& id, catalogue::Class const& type, Managed* managed = nullptr)
    {
        entries_.push_back({id, &type, managed});
    }
    template <class Proxy>
    void add(Proxy const& proxy)
    {
        add(proxy.getOID().getIdString(), *catalogue::findClass(reflect::className<Proxy>));
    }
    // Removes the object and those that belong to it.
    void remove(std::string const& id);
    // In the order in which they were added.
    std::vector<Entry> const& all() const { return entries_; }
    // Null when there is none.
    Entry const* find(std::string const& id) const;

    Clock& clock() { return clock_; }
    unsigned long seed() const { return seed_; }
    // A number from 0 to `most` that depends on the seed and on what it is for; 0 while the seed is 0.
    unsigned long vary(std::string_view purpose, unsigned long most) const;

    // The objects of a class, or of one derived from it, that belong to an object: those whose identifiers begin with
    // its own. When there are none, all of that class but the object itself; among them those of the very class, if
    // any.
    std::vector<Entry> related(std::string const& id, std::string_view className) const;

private:
    std::vector<Entry> entries_;
    Clock clock_;
    unsigned long const seed_;
};

// Whether the identifier is `prefix` with a decimal number from `least` to `most` behind it, in its shortest form.
bool numberBehind(std::string_view prefix, std::string_view id, long least, long most, long& number);

// Whether `type` is the class of that name or derived from it.
bool isA(catalogue::Class const& type, std::string_view className);

} // namespace trs::sim
