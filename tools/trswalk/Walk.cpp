#include "tools/trswalk/Walk.h"

#include "platform/NmaLogHelper.h"
#include "platform/host/CallFailure.h"
#include "tools/support/Console.h"

namespace {

constexpr long mostModules = 16;

std::string dotted(TipprmiArray<short, 4> const& address)
{
    return LogMakeString("%d.%d.%d.%d", address[0], address[1], address[2], address[3]);
}

// What an operation reads that reports a status; a value as before a call when it fails.
template <class T, class Proxy, class Declaring>
T read(Proxy const& proxy, ResponseInfo<GetClient> (Declaring::*operation)(T&) const)
{
    T value{};
    (proxy.*operation)(value);
    return value;
}

std::string addressesOf(IfNetClient const& ifNet)
{
    std::string text;
    for (IfNetClient::IpAddrInfo const& info : read(ifNet, &IfNetClient::getIpAddrSequence)) {
        text += (text.empty() ? "" : " ") + dotted(info.ipAddress);
    }
    return text.empty() ? "no address" : text;
}

std::string mtuOf(IfNetClient const& ifNet) { return "MTU " + std::to_string(read(ifNet, &IfNetClient::getMtu)); }

} // namespace

bool Walk::run()
{
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID)};
    if (!node.isConnected()) {
        return false;
    }
    say(node, "IpNode", "MTU " + std::to_string(read(node, &IpNodeClient::getMtu)));
    depth_ = 1;
    auto const transport = read(node, &IpNodeClient::getTransportIfNet);
    interface("transport", transport);
    interface("LMP", read(node, &IpNodeClient::getLMPIfNet));
    IpRoutingTableClient table;
    if (node.getDedicatedIpRoutingTable(table, 0) == GetClient::OK) {
        routes(table);
    }
    TipprmiSequence<EthLinkClient> const links = transport.getLinks();
    if (links.getLength() != 0) {
        hardware(links[0].getPort().getUnit().getHwmUnit());
    }
    depth_ = 0;
    return true;
}

void Walk::interface(char const* name, EthIfNetClient const& ifNet)
{
    say(ifNet, "EthIfNet", std::string(name) + ", " + addressesOf(ifNet) + ", " + mtuOf(ifNet));
    ++depth_;
    for (VlanIfNetClient const& vlanIfNet : ifNet.getVlanIfNetFabric().retrieveAll()) {
        vlan(vlanIfNet);
    }
    --depth_;
}

void Walk::vlan(VlanIfNetClient const& vlan)
{
    say(vlan, "VlanIfNet",
        "VLAN " + std::to_string(read(vlan, &VlanIfNetClient::getVlanId)) + ", " + addressesOf(vlan) + ", " +
            mtuOf(vlan));
}

void Walk::routes(IpRoutingTableClient const& table)
{
    auto const entries = read(table, &IpRoutingTableClient::getIpRouteEntriesCfg);
    say(table, "IpRoutingTable", std::to_string(entries.getLength()) + " routes");
    ++depth_;
    for (IpRoutingTableClient::IpRouteEntryCfg const& route : entries) {
        tools::say(std::string(2 * depth_, ' ') + dotted(route.destination) + " mask " + dotted(route.netmask) +
                   " by " + dotted(route.gateway));
    }
    --depth_;
}

void Walk::hardware(HwmUnitClient const& unit)
{
    say(unit, "HwmUnit",
        read(unit, &HwmItemClient::getActualHwType) + ", slot " + std::to_string(unit.getSlotNumber()) + ", serial " +
            read(unit, &HwmItemClient::getSerialNumber));
    ++depth_;
    for (long number = 0; number < mostModules; ++number) {
        HwmModuleClient module;
        if (unit.getModule(number, module) == GetClient::OK) {
            say(module, "HwmModule", read(module, &HwmItemClient::getActualHwType));
        }
    }
    auto const led = read(unit, &HwmUnitClient::getLed);
    say(led, "HwmLed", read(led, &HwmLedClient::getLedName));
    auto const sensor = read(unit, &HwmUnitClient::getSensor);
    say(sensor, "HwmSensor",
        read(sensor, &HwmSensorClient::getSensorName) + " " +
            std::to_string(read(sensor, &HwmSensorClient::getTemperature)));
    --depth_;
}

void Walk::say(TipprmiObjectClient const& object, std::string const& what, std::string const& values)
{
    tools::say(std::string(2 * depth_, ' ') + what + " '" + host::printable(object.getOID().getIdString()) +
               "': " + host::printable(values));
}
