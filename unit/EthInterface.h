// An Ethernet interface of the simulated unit: what EthIfNetClient and its VLAN fabric reach.
#pragma once

#include "clients/ip/EthIfNetClient.h"
#include "unit/IpInterface.h"
#include "unit/PublicAddress.h"
#include "unit/Vlan.h"

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trs::sim {

// The VLANs that it has can be had from it and from its fabric, which knows each by its VLAN identifier in decimal.
// Runs while one of its links does.
class EthInterface final : public IpInterface {
public:
    EthInterface(Inventory& inventory, std::string const& id, short number, Address const& address,
                 EthLinkClient const& link);

    auto proxy() const { return object().proxy<EthIfNetClient>(); }
    // Null when there is a VLAN of that identifier.
    Vlan const* addVlan(VlanIfNetClient::VlanIfNetCreateParams const& params);
    // The same with an object identifier of its own: that of the interface, "/Vlan/" and the VLAN identifier, behind
    // which ".N" may stand, as VLAN identifiers may change later.
    bool createVlan(std::string const& objectId);
    // False when there is none.
    bool removeVlan(std::string const& objectId);
    // Has the public address of the interface be that of the unit.
    void carryPublicAddress(PublicAddress& address);
    // As IpInterface::prefixOf(), of itself and its VLANs; `onlyUp`: of those that are up.
    int prefixOf(Address const& address, bool onlyUp) const;

private:
    void serveVlans();
    void serveFabric();
    Vlan const* addVlan(std::string const& objectId, VlanIfNetClient::VlanIfNetCreateParams const& params);
    // In the order of their identifiers.
    std::vector<Vlan const*> vlans() const;
    // Null when there is none.
    Vlan const* find(unsigned short id) const;
    Vlan const* find(std::string const& index) const;
    // False when there is none.
    bool erase(Vlan const* vlan);
    bool carries(EthLinkClient const& link) const;
    bool takeLinks(TipprmiSequence<EthLinkClient> const& links);
    EthLinkClient activeLink() const;
    std::string twice() const;

    Inventory& inventory_;
    TipprmiSequence<EthLinkClient> links_; // at least one
    EthLinkClient preferred_;
    bool hasVlans_ = true;
    bool hasQos_ = false;
    TipprmiArray<short, 6> ethernetAddress_{};
    std::list<std::unique_ptr<Vlan>> vlans_;
    Managed fabric_;
    std::optional<Signal::Subscription> addressChanges_; // of the interface that carries the public address
};

} // namespace trs::sim
