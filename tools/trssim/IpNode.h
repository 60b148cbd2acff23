// The IP node of the simulated unit: what IpNodeClient reaches under its well-known identifier.
#pragma once

#include "clients/ip/IpNodeClient.h"
#include "tools/trssim/EthInterface.h"
#include "tools/trssim/Hardware.h"
#include "tools/trssim/RoutingTable.h"

#include <map>
#include <string>

namespace sim {

// Owns a transport interface with two VLANs, the interface of the local management port (LMP), the routing table 0 and
// the hardware.
class IpNode {
public:
    IpNode();
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

    void serveInterfaces();
    void serveConfiguration();
    void resetConfiguration();

    Hardware hardware_{"HwmUnit-1"};
    EthInterface transport_{"IfNet/Transport", 1, makeAddress(10, 1, 0, 7), hardware_.link()};
    EthInterface lmp_{"IfNet/Lmp", 2, makeAddress(192, 168, 255, 129), hardware_.link()};
    RoutingTable routes_{"RoutingTable/0"};
    std::map<std::string, Entry> entries_;
    long mtu_ = 1500; // bytes
    long transportMode_ = IpNodeClient::TRANSPORT_MODE_IUBIP;
    bool answersIcmp_ = true;
    Servant servant_;
};

} // namespace sim
