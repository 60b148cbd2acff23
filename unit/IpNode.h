// The IP node of the simulated unit: what IpNodeClient reaches under its well-known identifier.
#pragma once

#include "clients/ip/IpNodeClient.h"
#include "unit/AccessServices.h"
#include "unit/EthInterface.h"
#include "unit/Hardware.h"
#include "unit/PublicAddress.h"
#include "unit/RoutingTable.h"
#include "unit/WideAreaInterfaces.h"

#include <map>
#include <string>

namespace trs::sim {

// Owns a transport interface with two VLANs, the interface of the local management port (LMP), the ATM and multilink
// interfaces, the routing table 0 and the hardware.
class IpNode {
public:
    // `address` outlives it.
    IpNode(Inventory& inventory, PublicAddress& address);
    // Creates a VLAN, a module or a wide area interface by the class and the identifier that it is to have. False when
    // it is none of these, or there already.
    bool create(std::string const& id, std::string_view className);
    // False when it is none of these.
    bool remove(std::string const& id);
    IpNode(IpNode const&) = delete;
    IpNode& operator=(IpNode const&) = delete;

private:
    // An IP configuration entry.
    struct Entry {
        Address address{};
        Address address2{};
        unsigned long number = 0;
        std::string text;
    };

    bool setEntry(std::string const& name, Entry const& entry);
    int prefixOf(Address const& address, bool onlyUp) const;
    void serveInterfaces();
    void serveConfiguration();
    void resetConfiguration();

    PublicAddress& address_;
    std::string firstAddress_; // the public one, at the start
    Hardware hardware_;
    EthInterface transport_;
    EthInterface lmp_;
    std::map<std::string, Entry> entries_;
    long mtu_ = 1500; // bytes
    long transportMode_ = IpNodeClient::TRANSPORT_MODE_IUBIP;
    bool answersIcmp_ = true;
    Managed object_;
    WideAreaInterfaces wideArea_;
    RoutingTable routes_;
    AccessServices access_;
    Signal::Subscription const addressChanges_;
};

} // namespace trs::sim
