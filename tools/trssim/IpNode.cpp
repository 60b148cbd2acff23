#include "tools/trssim/IpNode.h"

#include "tools/trssim/Setting.h"

#include <arpa/inet.h>
#include <array>

namespace sim {

namespace {

constexpr std::size_t mostEntries = 256;

VlanIfNetClient::VlanIfNetCreateParams vlan(unsigned short id, Address const& address)
{
    VlanIfNetClient::VlanIfNetCreateParams params{};
    params.vlanId = id;
    params.vlanInstanceId = id;
    params.ipAddressInfo.ipAddress = address;
    params.committedInfoRate = 10000;
    params.shaperBurstSize = VlanIfNetClient::SBS_MIN;
    return params;
}

} // namespace

IpNode::IpNode(Inventory& inventory)
    : hardware_(inventory, "HwmUnit-1"),
      transport_(inventory, "IfNet/Transport", 1, makeAddress(10, 1, 0, 7), hardware_.link()),
      lmp_(inventory, "IfNet/Lmp", 2, makeAddress(192, 168, 255, 129), hardware_.link()),
      routes_(inventory, "RoutingTable/0"), servant_(TipprmiOID(IpNodeClient::IPNODE_OID)),
      managed_(inventory, servant_, reflect::className<IpNodeClient>)
{
    transport_.addVlan(vlan(100, makeAddress(10, 100, 0, 7)));
    transport_.addVlan(vlan(200, makeAddress(10, 200, 0, 7)));
    resetConfiguration();
    serveInterfaces();
    serveConfiguration();
}

void IpNode::serveInterfaces()
{
    servant_
        .on<&IpNodeClient::getTransportIfNet>([this](EthIfNetClient& ifNet) {
            ifNet = transport_.proxy();
            return GetClient::OK;
        })
        .on<&IpNodeClient::getLMPIfNet>([this](EthIfNetClient& ifNet) {
            ifNet = lmp_.proxy();
            return GetClient::OK;
        })
        .on<&IpNodeClient::getDedicatedIpRoutingTable>([this](IpRoutingTableClient& table, long const& number) {
            if (number != 0) {
                return GetClient::FAILED;
            }
            table = routes_.proxy();
            return GetClient::OK;
        });
}

void IpNode::serveConfiguration()
{
    serveSetting<&IpNodeClient::getMtu, &IpNodeClient::setMtu>(servant_, mtu_);
    serveSetting<&IpNodeClient::getTransportMode, &IpNodeClient::setTransportMode>(servant_, transportMode_);
    serveSetting<&IpNodeClient::getIcmpResponseEnabled, &IpNodeClient::setIcmpResponseEnabled>(servant_, answersIcmp_);
    servant_
        .on<&IpNodeClient::getIpConfig>([this](std::string const& name, Address& address, Address& address2,
                                               unsigned long& number, std::string& text) {
            auto const found = entries_.find(name);
            if (found == entries_.end()) {
                return GetClient::FAILED;
            }
            address = found->second.address;
            address2 = found->second.address2;
            number = found->second.number;
            text = found->second.text;
            return GetClient::OK;
        })
        .on<&IpNodeClient::setIpConfig>([this](std::string const& name, Address const& address, Address const& address2,
                                               unsigned long const& number, std::string const& text) {
            if (entries_.size() == mostEntries && !entries_.contains(name)) {
                return SetClient::FAILED;
            }
            entries_[name] = {address, address2, number, text};
            return SetClient::OK;
        })
        .on<&IpNodeClient::resetIpConfig>([this] {
            resetConfiguration();
            return SetClient::OK;
        });
}

void IpNode::setPrimaryAddress(std::string const& address)
{
    std::array<unsigned char, 4> octets{};
    if (::inet_pton(AF_INET, address.c_str(), octets.data()) == 1) {
        entries_[IpNodeClient::BTS_PRIMARY_ID].address = makeAddress(octets[0], octets[1], octets[2], octets[3]);
    }
}

void IpNode::resetConfiguration()
{
    entries_.clear();
    entries_[IpNodeClient::BTS_ID].number = 4711;
    entries_[IpNodeClient::BTS_PRIMARY_ID].address = makeAddress(10, 1, 0, 7);
}

} // namespace sim
