// An Ethernet interface of the simulated unit: what EthIfNetClient and its VLAN fabric reach.
#pragma once

#include "clients/ip/EthIfNetClient.h"
#include "unit/Interface.h"
#include "unit/Vlan.h"

#include <map>
#include <memory>
#include <string>

namespace trs::sim {

// The VLANs that it has can be had from it and from its fabric, which knows each by its VLAN identifier in decimal.
class EthInterface final : public Interface {
public:
    EthInterface(Inventory& inventory, std::string const& id, short number, Address const& address,
                 EthLinkClient const& link);

    auto proxy() const { return EthIfNetClient(&servant()); }
    // Null when there is a VLAN of that identifier.
    Vlan const* addVlan(VlanIfNetClient::VlanIfNetCreateParams const& params);
    // False when there is none.
    bool removeVlan(unsigned short id) { return vlans_.erase(id) != 0; }

private:
    using Vlans = std::map<unsigned short, std::unique_ptr<Vlan>>;

    void serveVlans();
    void serveFabric();
    static VlanIfNetClient proxyOf(Vlan const* vlan);
    VlanIfNetClient vlanFrom(Vlans::const_iterator place, std::string& index) const;
    Vlan const* vlanAt(std::string const& index) const;

    Inventory& inventory_;
    std::string const id_;
    TipprmiSequence<EthLinkClient> links_;
    bool hasVlans_ = true;
    bool hasQos_ = false;
    Vlans vlans_; // by the identifiers that they were created with
    Servant fabric_;
    Managed managedFabric_;
};

} // namespace trs::sim
