#include "unit/IpNode.h"

#include "unit/Status.h"

#include <algorithm>

namespace trs::sim {

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

IpNode::IpNode(Inventory& inventory, PublicAddress& address)
    : address_(address), firstAddress_(address.text()), hardware_(inventory, "HwmUnit-1"),
      transport_(inventory, "IfNet/Transport", 1, makeAddress(10, 1, 0, 7), hardware_.link()),
      lmp_(inventory, "IfNet/Lmp", 2, makeAddress(192, 168, 255, 129), hardware_.lmpLink()),
      object_(inventory, IpNodeClient::IPNODE_OID, reflect::className<IpNodeClient>),
      wideArea_(inventory, object_.servant(), 3),
      routes_(inventory, "RoutingTable/0", [this](Address const& to, bool onlyUp) { return prefixOf(to, onlyUp); }),
      access_(inventory, address), addressChanges_(address.changes(), [this] { object_.changed(); })
{
    transport_.addVlan(vlan(100, makeAddress(10, 100, 0, 7)));
    transport_.addVlan(vlan(200, makeAddress(10, 200, 0, 7)));
    transport_.carryPublicAddress(address_);
    resetConfiguration();
    serveInterfaces();
    serveConfiguration();
}

int IpNode::prefixOf(Address const& address, bool onlyUp) const
{
    return std::max(
        {transport_.prefixOf(address, onlyUp), lmp_.prefixOf(address, onlyUp), wideArea_.prefixOf(address, onlyUp)});
}

void IpNode::serveInterfaces()
{
    object_.servant()
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
    object_.holds<&IpNodeClient::getMtu, &IpNodeClient::setMtu>(mtu_);
    object_.holds<&IpNodeClient::getTransportMode, &IpNodeClient::setTransportMode>(transportMode_);
    object_.holds<&IpNodeClient::getIcmpResponseEnabled, &IpNodeClient::setIcmpResponseEnabled>(answersIcmp_);
    object_.holdsEntries<&IpNodeClient::getIpConfig, &IpNodeClient::setIpConfig>(
        [this] { return Object::keysOf(entries_); }, [this] { entries_.clear(); });
    object_.facts().add("firstAddress", firstAddress_);
    // Each of them is that of an entry.
    auto const setAddresses = [this](std::string const& name) {
        return [this, name](Address const& address, Address const& address2) {
            auto const found = entries_.find(name);
            Entry entry = found != entries_.end() ? found->second : Entry();
            entry.address = address;
            entry.address2 = address2;
            return statusOf<SetClient>(setEntry(name, entry));
        };
    };
    object_.servant()
        .on<&IpNodeClient::setBtsPrimaryIpAddress>(setAddresses(IpNodeClient::BTS_PRIMARY_ID))
        .on<&IpNodeClient::setPrimIpAdr>(setAddresses(IpNodeClient::BTS_IP_PRIM_ID))
        .on<&IpNodeClient::getIpConfig>([this](std::string const& name, Address& address, Address& address2,
                                               unsigned long& number, std::string& text) {
            auto const found = entries_.find(name);
            if (found == entries_.end()) {
                return GetClient::FAILED;
            }
            address = name == IpNodeClient::BTS_PRIMARY_ID ? address_.octets() : found->second.address;
            address2 = found->second.address2;
            number = found->second.number;
            text = found->second.text;
            return GetClient::OK;
        })
        .on<&IpNodeClient::setIpConfig>([this](std::string const& name, Address const& address, Address const& address2,
                                               unsigned long const& number, std::string const& text) {
            return statusOf<SetClient>(setEntry(name, {address, address2, number, text}));
        })
        .on<&IpNodeClient::resetIpConfig>([this] {
            resetConfiguration();
            if (address_.text() != firstAddress_) {
                address_.announce(firstAddress_);
            }
            return SetClient::OK;
        });
}

bool IpNode::setEntry(std::string const& name, Entry const& entry)
{
    if (entries_.size() == mostEntries && !entries_.contains(name)) {
        return false;
    }
    entries_[name] = entry;
    if (name == IpNodeClient::BTS_PRIMARY_ID) {
        address_.announce(entry.address);
    }
    return true;
}

bool IpNode::create(std::string const& id, std::string_view className)
{
    return (className == reflect::className<VlanIfNetClient> && (transport_.createVlan(id) || lmp_.createVlan(id))) ||
           wideArea_.create(id, className) ||
           (className == reflect::className<HwmModuleClient> && hardware_.createModule(id));
}

bool IpNode::remove(std::string const& id)
{
    return transport_.removeVlan(id) || lmp_.removeVlan(id) || wideArea_.remove(id) || hardware_.removeModule(id);
}

void IpNode::resetConfiguration()
{
    entries_.clear();
    entries_[IpNodeClient::BTS_ID].number = 4711;
    entries_[IpNodeClient::BTS_PRIMARY_ID]; // whose address is the public one
}

} // namespace trs::sim
