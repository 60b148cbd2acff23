#include "tools/trssim/Equipment.h"

#include "clients/transmission/AtmVcCrossConnectionClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"

namespace sim {

namespace {

struct Plain {
    char const* id;
    char const* className;
};

constexpr Plain plain[] = {
    // The IP node's services and maps.
    {"Access/RuleManager", "RmAccessClient"},
    {"Access/Ntp", "NtpAccessClient"},
    {"Access/Dhcp", "DhcpAccessClient"},
    {"Access/IpSec", "IpSecClient"},
    {"TransportMode", "TransportModeParClient"},
    {"VlanMap", "VlanMapClient"},
    {"DiffServToVlanMap", "DiffServToVlanMapClient"},
    {"DiffServToVlanMap/Entry/1", "DsvmEntryClient"},
    {"DiffServToVlanMap/Entry/2", "DsvmEntryClient"},
    {"Bfd/1", "BfdIpIubClient"},
    {"Bfd/IfNet/1", "IfNetBfdIpIubClient"},
    {"RoutingTable/0/Entry/1", "IpRouteEntryClient"},
    // PDH with two lines in one multilink bundle.
    {"PdhUnit-1", "PdhUnitClient"},
    {"PdhUnit-1/Port/1", "TransmissionPortClient"},
    {"PdhUnit-1/Port/2", "TransmissionPortClient"},
    {"PdhUnit-1/If/1", "TransmissionIfClient"},
    {"PdhUnit-1/If/2", "TransmissionIfClient"},
    {"PdhUnit-1/Mlp3Endpoint/1", "Mlp3EndpointClient"},
    {"PdhUnit-1/Mlp3Link/1", "Mlp3LinkClient"},
    {"PdhUnit-1/Mlp3Link/1/Descriptor", "Mlp3LinkDescriptorClient"},
    {"PdhUnit-1/Mlp3Hdlc/1", "Mlp3HdlcClient"},
    {"PdhUnit-1/Mlp3Hdlc/2", "Mlp3HdlcClient"},
    {"IfNet/Ppp/1", "Ip3IfNetClient"},
    // ATM: a channel connection between two termination points, and one that ends in AAL5.
    {"IfNet/Atm/1", "AtmIfNetClient"},
    {"Atm/TrafficDescriptor/1", "AtmTrafficDescriptorClient"},
    {"Atm/Vctp/1", "VirtualChannelConnectionTpClient"},
    {"Atm/Vctp/2", "VirtualChannelConnectionTpClient"},
    {"Atm/Aal5Trail/1", "Aal5VirtualChannelTrailTpClient"},
    {"Atm/Aal5Trail/1/Pm", "Aal5PmClient"},
    {"Atm/Aal5Profile/1", "Aal5ProfileClient"},
    {"SenaPolicy", "ApplicationObjectSenaPolicyClient"},
};

} // namespace

Equipment::Equipment(Inventory& inventory)
{
    for (auto const& [id, className] : plain) {
        objects_.emplace_back(inventory, id, className);
    }
    using CrossConnection = AtmVcCrossConnectionClient;
    PlainObject& crossed =
        objects_.emplace_back(inventory, "Atm/VcCrossConnection/1", reflect::className<CrossConnection>);
    crossed.servant()
        .on<&CrossConnection::getTerminationA>(
            [] { return VirtualChannelConnectionTpClient(TipprmiOID("Atm/Vctp/1")); })
        .on<&CrossConnection::getTerminationB>(
            [] { return VirtualChannelConnectionTpClient(TipprmiOID("Atm/Vctp/2")); });
}

} // namespace sim
