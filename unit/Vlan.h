// A VLAN of a simulated Ethernet interface: what VlanIfNetClient reaches.
#pragma once

#include "clients/ip/VlanIfNetClient.h"
#include "unit/Interface.h"

#include <string>

namespace trs::sim {

class Vlan final : public Interface {
public:
    Vlan(Inventory& inventory, std::string const& owner, VlanIfNetClient::VlanIfNetCreateParams const& params);

    auto proxy() const { return VlanIfNetClient(&servant()); }
    unsigned short id() const { return id_; }

private:
    unsigned short id_;
    unsigned long committedInfoRate_;
    unsigned long sir_;
    unsigned long shaperBurstSize_;
    unsigned long const instanceId_;
    VlanIfNetClient::IpAddressInfo addressInfo_;
    bool isShaped_;
    bool hasQos_;
    bool hasCesopsn_;
};

} // namespace trs::sim
