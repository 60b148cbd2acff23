#include "unit/Equipment.h"

#include "clients/transmission/AtmVcCrossConnectionClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"

namespace trs::sim {

namespace {

constexpr std::size_t mostObjects = 10'000;

struct Plain {
    char const* id;
    char const* className;
};

constexpr Plain plain[] = {
    // The IP node's services and maps.
    {"Access/IpSec", "IpSecClient"},
    {"TransportMode", "TransportModeParClient"},
    {"VlanMap", "VlanMapClient"},
    {"DiffServToVlanMap", "DiffServToVlanMapClient"},
    {"DiffServToVlanMap/Entry/1", "DsvmEntryClient"},
    {"DiffServToVlanMap/Entry/2", "DsvmEntryClient"},
    {"Bfd/1", "BfdIpIubClient"},
    {"Bfd/IfNet/1", "IfNetBfdIpIubClient"},
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
    // ATM: a channel connection between two termination points, and one that ends in AAL5.
    {"Atm/TrafficDescriptor/1", "AtmTrafficDescriptorClient"},
    {"Atm/Vctp/1", "VirtualChannelConnectionTpClient"},
    {"Atm/Vctp/2", "VirtualChannelConnectionTpClient"},
    {"Atm/Aal5Trail/1", "Aal5VirtualChannelTrailTpClient"},
    {"Atm/Aal5Trail/1/Pm", "Aal5PmClient"},
    {"Atm/Aal5Profile/1", "Aal5ProfileClient"},
    {"SenaPolicy", "ApplicationObjectSenaPolicyClient"},
};

} // namespace

Equipment::Equipment(Inventory& inventory) : inventory_(inventory), rules_(inventory, "Access/RuleManager")
{
    for (auto const& [id, className] : plain) {
        objects_.emplace_back(inventory, id, className);
    }
    using CrossConnection = AtmVcCrossConnectionClient;
    Managed& crossed = objects_.emplace_back(inventory, "Atm/VcCrossConnection/1", reflect::className<CrossConnection>);
    crossed.servant()
        .on<&CrossConnection::getTerminationA>(
            [] { return VirtualChannelConnectionTpClient(TipprmiOID("Atm/Vctp/1")); })
        .on<&CrossConnection::getTerminationB>(
            [] { return VirtualChannelConnectionTpClient(TipprmiOID("Atm/Vctp/2")); });
}

bool Equipment::create(std::string const& id, std::string_view className)
{
    if (inventory_.find(id) != nullptr || inventory_.all().size() >= mostObjects) {
        return false;
    }
    objects_.emplace_back(inventory_, id, className);
    return true;
}

bool Equipment::remove(std::string const& id)
{
    return std::erase_if(objects_, [&id](Managed const& object) { return object.id() == id; }) != 0;
}

} // namespace trs::sim
