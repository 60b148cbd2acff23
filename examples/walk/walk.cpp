// Walks a unit's objects with typed proxies, from the IP node down: interfaces, VLANs, routes, hardware. Every object
// is a line, indented by its place, with its identifier and some of its values.
#include "broker/Broker.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/services/HwmUnitClient.h"

#include <cstdio>
#include <string>

namespace {

constexpr long mostModules = 16;

// What an operation reads that reports a status; a value as before a call when it fails.
template <class T, class Proxy, class Declaring>
T read(Proxy const& proxy, ResponseInfo<GetClient> (Declaring::*operation)(T&) const)
{
    T value{};
    (proxy.*operation)(value);
    return value;
}

void say(int depth, TipprmiObjectClient const& object, char const* what, std::string const& values)
{
    std::printf("%*s%s '%s': %s\n", 2 * depth, "", what, object.getOID().getIdString().c_str(), values.c_str());
}

std::string dotted(TipprmiArray<short, 4> const& address)
{
    std::string text;
    for (std::size_t i = 0; i < 4; ++i) {
        text += (i == 0 ? "" : ".") + std::to_string(address[i]);
    }
    return text;
}

std::string addressesOf(IfNetClient const& ifNet)
{
    std::string text;
    for (IfNetClient::IpAddrInfo const& info : read(ifNet, &IfNetClient::getIpAddrSequence)) {
        text += (text.empty() ? "" : " ") + dotted(info.ipAddress);
    }
    return (text.empty() ? "no address" : text) + ", MTU " + std::to_string(read(ifNet, &IfNetClient::getMtu));
}

void walkInterface(char const* name, EthIfNetClient const& ifNet)
{
    say(1, ifNet, "EthIfNet", std::string(name) + ", " + addressesOf(ifNet));
    for (VlanIfNetClient const& vlan : ifNet.getVlanIfNetFabric().retrieveAll()) {
        say(2, vlan, "VlanIfNet",
            "VLAN " + std::to_string(read(vlan, &VlanIfNetClient::getVlanId)) + ", " + addressesOf(vlan));
    }
}

void walkRoutes(IpNodeClient const& node)
{
    IpRoutingTableClient table;
    if (node.getDedicatedIpRoutingTable(table, 0) != GetClient::OK) {
        return;
    }
    auto const routes = read(table, &IpRoutingTableClient::getIpRouteEntriesCfg);
    say(1, table, "IpRoutingTable", std::to_string(routes.getLength()) + " routes");
    for (IpRoutingTableClient::IpRouteEntryCfg const& route : routes) {
        std::printf("    %s mask %s by %s\n", dotted(route.destination).c_str(), dotted(route.netmask).c_str(),
                    dotted(route.gateway).c_str());
    }
}

void walkHardware(HwmUnitClient const& unit)
{
    say(1, unit, "HwmUnit",
        read(unit, &HwmItemClient::getActualHwType) + ", slot " + std::to_string(unit.getSlotNumber()) + ", serial " +
            read(unit, &HwmItemClient::getSerialNumber));
    for (long number = 0; number < mostModules; ++number) {
        HwmModuleClient module;
        if (unit.getModule(number, module) == GetClient::OK) {
            say(2, module, "HwmModule", read(module, &HwmItemClient::getActualHwType));
        }
    }
    auto const led = read(unit, &HwmUnitClient::getLed);
    say(2, led, "HwmLed", read(led, &HwmLedClient::getLedName));
    auto const sensor = read(unit, &HwmUnitClient::getSensor);
    say(2, sensor, "HwmSensor",
        read(sensor, &HwmSensorClient::getSensorName) + " " +
            std::to_string(read(sensor, &HwmSensorClient::getTemperature)));
}

} // namespace

int main(int argc, char** argv)
{
    char const* const unit = argc > 1 ? argv[1] : "unix:/tmp/trssim.sock";
    if (std::string const why = trs::Broker::instance().addPeer(unit); !why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return 1;
    }
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID)};
    if (!node.isConnected()) {
        std::fprintf(stderr, "no IP node can be reached at %s\n", unit);
        return 1;
    }
    say(0, node, "IpNode", "MTU " + std::to_string(read(node, &IpNodeClient::getMtu)));
    auto const transport = read(node, &IpNodeClient::getTransportIfNet);
    walkInterface("transport", transport);
    walkInterface("LMP", read(node, &IpNodeClient::getLMPIfNet));
    walkRoutes(node);
    TipprmiSequence<EthLinkClient> const links = transport.getLinks();
    if (links.getLength() != 0) {
        walkHardware(links[0].getPort().getUnit().getHwmUnit());
    }
    return 0;
}
