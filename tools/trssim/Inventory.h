// The objects of the simulated unit, by their classes.
#pragma once

#include "tools/catalogue/Class.h"

#include <string>
#include <vector>

namespace sim {

class Inventory {
public:
    struct Entry {
        std::string id;
        catalogue::Class const* type;
    };

    void add(std::string const& id, catalogue::Class const& type) { entries_.push_back({id, &type}); }
    // Removes the object and those that belong to it.
    void remove(std::string const& id);
    // In the order in which they were added.
    std::vector<Entry> const& all() const { return entries_; }

    // The objects of a class, or of one derived from it, that belong to an object: those whose identifiers begin with
    // its own. When there are none, all of that class but the object itself; among them those of the very class, if
    // any.
    std::vector<Entry> related(std::string const& id, std::string_view className) const;

private:
    std::vector<Entry> entries_;
};

// Whether `type` is the class of that name or derived from it.
bool isA(catalogue::Class const& type, std::string_view className);

} // namespace sim
