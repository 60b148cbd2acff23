#include "unit/EthInterface.h"

#include "broker/framework/QelOperations.h"
#include "unit/Journal.h"
#include "unit/Setting.h"

#include <algorithm>
#include <iterator>

namespace trs::sim {

namespace {

constexpr std::size_t mostVlans = 4094;
constexpr unsigned long mostLinks = 16;

} // namespace

EthInterface::EthInterface(Inventory& inventory, std::string const& id, short number, Address const& address,
                           EthLinkClient const& link)
    : Interface(inventory, reflect::className<EthIfNetClient>, id, "eth", number, address), inventory_(inventory),
      id_(id), fabric_(TipprmiOID(id + "/VlanFabric")),
      managedFabric_(inventory, fabric_, reflect::className<VlanIfNetFabricClient>)
{
    links_.push_back(link);
    servant()
        .on<&EthIfNetClient::getEthernetAddress>([number](TipprmiArray<short, 6>& ethernetAddress) {
            constexpr short locallyAdministered = 2;
            ethernetAddress = TipprmiArray<short, 6>{};
            ethernetAddress[0] = locallyAdministered;
            ethernetAddress[5] = number;
            return GetClient::OK;
        })
        .on<&EthIfNetClient::getLinks>([this] { return links_; })
        .on<&EthIfNetClient::setLinks>([this](TipprmiSequence<EthLinkClient> const& links) {
            if (links.getLength() != 0 && links.getLength() <= mostLinks) {
                links_ = links;
            }
        })
        .on<&EthIfNetClient::getActiveLink>([this] { return links_[0]; })
        .on<&EthIfNetClient::getVlanIfNetFabric>([this] { return VlanIfNetFabricClient(&fabric_); });
    servant().on<&EthIfNetClient::resetIpAddrSequence>([this] {
        clearAddresses();
        return SetClient::OK;
    });
    serveSetting<&EthIfNetClient::getVlanEnabled, &EthIfNetClient::setVlanEnabled>(servant(), hasVlans_);
    serveSetting<&EthIfNetClient::getQosEnable, &EthIfNetClient::setQosEnable>(servant(), hasQos_);
    serveVlans();
    serveFabric();
}

Vlan const* EthInterface::addVlan(VlanIfNetClient::VlanIfNetCreateParams const& params)
{
    if (vlans_.size() == mostVlans || vlans_.contains(params.vlanId)) {
        return nullptr;
    }
    return vlans_.emplace(params.vlanId, std::make_unique<Vlan>(inventory_, id_, params)).first->second.get();
}

void EthInterface::serveVlans()
{
    servant()
        .on<&EthIfNetClient::createVlan>(
            [this](VlanIfNetClient::VlanIfNetCreateParams const& params, VlanIfNetClient& created) {
                Vlan const* const vlan = addVlan(params);
                if (vlan == nullptr) {
                    return RunClient::FAILED;
                }
                created = vlan->proxy();
                say("VLAN " + std::to_string(params.vlanId) + " created");
                return RunClient::OK;
            })
        .on<&EthIfNetClient::deleteVlan>([this](unsigned short const& id) {
            if (!removeVlan(id)) {
                return RunClient::FAILED;
            }
            say("VLAN " + std::to_string(id) + " deleted");
            return RunClient::OK;
        })
        .on<&EthIfNetClient::getVlanIfNet>([this](unsigned short const& id, VlanIfNetClient& found) {
            auto const vlan = vlans_.find(id);
            if (vlan == vlans_.end()) {
                return RunClient::FAILED;
            }
            found = vlan->second->proxy();
            return RunClient::OK;
        })
        .on<&EthIfNetClient::setVlanTags>([](TipprmiSequence<unsigned short> const&) {}) // they are the VLANs' own
        .on<&EthIfNetClient::getVlanTags>([this] {
            TipprmiSequence<unsigned short> tags;
            for (auto const& [id, vlan] : vlans_) {
                tags.push_back(id);
            }
            return tags;
        });
}

void EthInterface::serveFabric()
{
    fabric_.on<&QelFabricBaseClient::getSize>([this] { return static_cast<unsigned long>(vlans_.size()); })
        .on<&QelFabricBaseClient::getIndexes>([this] {
            TipprmiSequence<std::string> indexes;
            for (auto const& [id, vlan] : vlans_) {
                indexes.push_back(std::to_string(id));
            }
            return indexes;
        })
        .on<&VlanIfNetFabricClient::retrieve>([this](std::string const& index) { return proxyOf(vlanAt(index)); })
        .on<&VlanIfNetFabricClient::retrieveAll>([this] {
            TipprmiSequence<VlanIfNetClient> all;
            for (auto const& [id, vlan] : vlans_) {
                all.push_back(vlan->proxy());
            }
            return all;
        })
        .on<&VlanIfNetFabricClient::retrieveFirst>(
            [this](std::string& index) { return vlanFrom(vlans_.begin(), index); })
        .on<&VlanIfNetFabricClient::retrieveNext>([this](std::string const& previous, std::string& index) {
            auto const at = std::ranges::find_if(
                vlans_, [&](auto const& entry) { return std::to_string(entry.first) == previous; });
            return vlanFrom(at != vlans_.end() ? std::next(at) : at, index);
        })
        .on<&VlanIfNetFabricClient::create>(
            [this](std::string const& index, VlanIfNetClient::VlanIfNetCreateParams const& params) {
                return index == std::to_string(params.vlanId) ? proxyOf(addVlan(params)) : VlanIfNetClient();
            })
        .on<&VlanIfNetFabricClient::createWithIndex>(
            [this](std::string& index, VlanIfNetClient::VlanIfNetCreateParams const& params) {
                Vlan const* const vlan = addVlan(params);
                index = vlan != nullptr ? std::to_string(params.vlanId) : "";
                return proxyOf(vlan);
            })
        .on<&VlanIfNetFabricClient::destroy>([this](std::string const& index) {
            std::erase_if(vlans_, [&](auto const& entry) { return std::to_string(entry.first) == index; });
        })
        .on<&VlanIfNetFabricClient::destroyByInterface>([this](VlanIfNetClient const& vlan) {
            std::erase_if(vlans_, [&](auto const& entry) { return entry.second->proxy().isSameObject(vlan); });
        });
}

VlanIfNetClient EthInterface::proxyOf(Vlan const* vlan) { return vlan != nullptr ? vlan->proxy() : VlanIfNetClient(); }

// The VLAN at that place and its index; unbound and empty at the end.
VlanIfNetClient EthInterface::vlanFrom(Vlans::const_iterator place, std::string& index) const
{
    index = place != vlans_.end() ? std::to_string(place->first) : "";
    return place != vlans_.end() ? place->second->proxy() : VlanIfNetClient();
}

Vlan const* EthInterface::vlanAt(std::string const& index) const
{
    auto const found = std::find_if(vlans_.begin(), vlans_.end(),
                                    [&](auto const& entry) { return std::to_string(entry.first) == index; });
    return found != vlans_.end() ? found->second.get() : nullptr;
}

} // namespace trs::sim
