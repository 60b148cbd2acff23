#include "unit/IpNode.h"

#include "unit/Setting.h"
#include "unit/Status.h"

#include <arpa/inet.h>
#include <array>

namespace trs::sim {

namespace {

constexpr std::size_t mostEntries = 256;
constexpr long greatestVlan = 0xffff;

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
      wideArea_(inventory, servant_, 3), managed_(inventory, servant_, reflect::className<IpNodeClient>)
{
    transport_.addVlan(vlan(100, makeAddress(10, 100, 0, 7)));
    transport_.addVlan(vlan(200, makeAddress(10, 200, 0, 7)));
    resetConfiguration();
    managed_.addKeys("getIpConfig", {[this] { return Properties::keysOf(entries_); }, [this] { entries_.clear(); }});
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
        .on<&IpNodeClient::getIfNet>([this](long const& number, IfNetClient& ifNet) {
            ifNet = number == 1   ? IfNetClient(transport_.proxy())
                    : number == 2 ? IfNetClient(lmp_.proxy())
                                  : wideArea_.interface(number);
            return statusOf<GetClient>(!ifNet.getOID().isNull());
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

bool IpNode::create(std::string const& id, std::string_view className)
{
    long number = 0;
    if (className == reflect::className<VlanIfNetClient>) {
        EthInterface* const owner = vlanOwner(id, number);
        return owner != nullptr && owner->addVlan(vlan(static_cast<unsigned short>(number), {})) != nullptr;
    }
    return wideArea_.create(id, className) ||
           (className == reflect::className<HwmModuleClient> && hardware_.createModule(id));
}

bool IpNode::remove(std::string const& id)
{
    long number = 0;
    EthInterface* const owner = vlanOwner(id, number);
    return (owner != nullptr && owner->removeVlan(static_cast<unsigned short>(number))) || wideArea_.remove(id) ||
           hardware_.removeModule(id);
}

// The interface that a VLAN of this identifier belongs to; null when it is none.
EthInterface* IpNode::vlanOwner(std::string const& id, long& number)
{
    for (EthInterface* const owner : {&transport_, &lmp_}) {
        if (numberBehind(owner->proxy().getOID().getIdString() + "/Vlan/", id, 0, greatestVlan, number)) {
            return owner;
        }
    }
    return nullptr;
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

} // namespace trs::sim
