// The objects of the simulated unit that keep what they are told and have no behaviour of their own.
#pragma once

#include "tools/trssim/Managed.h"

#include <list>

namespace sim {

// Access services, maps, BFD and the whole of PDH, multilink PPP and ATM: with those that are served by hand, every
// interface of the catalogue has an object.
class Equipment {
public:
    explicit Equipment(Inventory& inventory);

private:
    std::list<PlainObject> objects_;
};

} // namespace sim
