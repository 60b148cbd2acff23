// Walks the objects of a unit from the IP node down and says what it finds.
#pragma once

#include "clients/ip/IpNodeClient.h"
#include "clients/services/HwmUnitClient.h"

#include <string>

// Each line is one object: indented by its place in the tree, with its class, its identifier and some of its values.
class Walk {
public:
    // False when the unit has no IP node that can be reached; nothing was said then.
    bool run();

private:
    void interface(char const* name, EthIfNetClient const& ifNet);
    void vlan(VlanIfNetClient const& vlan);
    void routes(IpRoutingTableClient const& table);
    void hardware(HwmUnitClient const& unit);
    void say(TipprmiObjectClient const& object, std::string const& what, std::string const& values);

    std::size_t depth_ = 0;
};
