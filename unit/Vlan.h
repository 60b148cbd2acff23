// A VLAN of a simulated Ethernet interface: what VlanIfNetClient reaches.
#pragma once

#include "clients/ip/VlanIfNetClient.h"
#include "unit/IpInterface.h"

#include <functional>
#include <string>

namespace trs::sim {

// Runs while the interface that it is on is up.
class Vlan final : public IpInterface {
public:
    // What the interface that it is on decides and tells.
    struct Owner {
        std::function<bool(unsigned short id)> isFree;
        std::function<bool()> isUp;
    };
    Vlan(Inventory& inventory, std::string const& id, VlanIfNetClient::VlanIfNetCreateParams const& params,
         Owner owner);

    auto proxy() const { return object().proxy<VlanIfNetClient>(); }
    std::string const& objectId() const { return object().id(); }
    // The VLAN identifier at present.
    unsigned short id() const { return id_; }

private:
    unsigned short id_;
    unsigned long committedInfoRate_;
    unsigned long sir_;
    unsigned long shaperBurstSize_;
    unsigned long instanceId_;
    VlanIfNetClient::IpAddressInfo addressInfo_;
    bool isShaped_;
    bool hasQos_;
    bool hasCesopsn_;
};

} // namespace trs::sim
