// The objects of the simulated unit that keep what they are told and have no behaviour of their own.
#pragma once

#include "unit/Managed.h"
#include "unit/RuleManager.h"

#include <list>
#include <string>
#include <string_view>

namespace trs::sim {

// Access services, maps, BFD and the whole of PDH, multilink PPP and ATM: with those that are served by hand, every
// interface of the catalogue has an object.
class Equipment {
public:
    explicit Equipment(Inventory& inventory);
    Equipment(Equipment const&) = delete;
    Equipment& operator=(Equipment const&) = delete;

    // One more of these objects. False when the identifier is taken, or there are too many.
    bool create(std::string const& id, std::string_view className);
    // False when it is none of these objects.
    bool remove(std::string const& id);

private:
    Inventory& inventory_;
    RuleManager rules_;
    std::list<Managed> objects_;
};

} // namespace trs::sim
