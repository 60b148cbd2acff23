#include "unit/EthInterface.h"

#include "broker/framework/QelOperations.h"
#include "unit/Journal.h"
#include "unit/Status.h"

#include <algorithm>

namespace trs::sim {

namespace {

constexpr std::size_t mostVlans = 4094;
constexpr unsigned long mostLinks = 16;
constexpr long greatestVlan = 0xffff;

std::string indexOf(Vlan const* vlan) { return vlan != nullptr ? std::to_string(vlan->id()) : ""; }

VlanIfNetClient proxyOf(Vlan const* vlan) { return vlan != nullptr ? vlan->proxy() : VlanIfNetClient(); }

} // namespace

EthInterface::EthInterface(Inventory& inventory, std::string const& id, short number, Address const& address,
                           EthLinkClient const& link)
    : IpInterface(inventory, reflect::className<EthIfNetClient>, id, "eth", number, address), inventory_(inventory),
      fabric_(inventory, id + "/VlanFabric", reflect::className<VlanIfNetFabricClient>)
{
    constexpr short locallyAdministered = 2;
    ethernetAddress_[0] = locallyAdministered;
    ethernetAddress_[5] = number;
    links_.push_back(link);
    Managed& interface = object();
    interface.tells<&EthIfNetClient::getEthernetAddress>(ethernetAddress_);
    interface.servant()
        .on<&EthIfNetClient::getLinks>([this] { return links_; })
        .on<&EthIfNetClient::setLinks>([this](TipprmiSequence<EthLinkClient> const& links) {
            if (takeLinks(links)) {
                lookBelow();
            }
        })
        .on<&EthIfNetClient::getActiveLink>([this] { return activeLink(); })
        .on<&EthIfNetClient::setActiveLink>([this](EthLinkClient const& wanted) {
            if (std::ranges::any_of(links_, [&](EthLinkClient const& each) { return each.isSameObject(wanted); })) {
                preferred_ = wanted;
            }
        })
        .on<&EthIfNetClient::getVlanIfNetFabric>([this] { return fabric_.proxy<VlanIfNetFabricClient>(); })
        .on<&EthIfNetClient::resetIpAddrSequence>([this] {
            clearAddresses();
            return SetClient::OK;
        });
    interface.facts().addTold<&EthIfNetClient::getLinks>(
        links_, [this](TipprmiSequence<EthLinkClient> const& links) { return takeLinks(links); });
    interface.facts().addGiven<&EthIfNetClient::setActiveLink>(preferred_);
    interface.holds<&EthIfNetClient::getVlanEnabled, &EthIfNetClient::setVlanEnabled>(hasVlans_);
    interface.holds<&EthIfNetClient::getQosEnable, &EthIfNetClient::setQosEnable>(hasQos_);
    fabric_.onSettle([this] { return twice(); });
    standOn(
        [this] { return std::ranges::any_of(links_, [this](EthLinkClient const& each) { return carries(each); }); });
    serveVlans();
    serveFabric();
}

// A link carries while its operational state is enabled. What the unit does not know is taken to do so.
bool EthInterface::carries(EthLinkClient const& link) const
{
    auto* const known = dynamic_cast<Managed*>(inventory_.find(link.getOID().getIdString()));
    return known == nullptr || known->faults() == nullptr || known->faults()->isEnabled();
}

bool EthInterface::takeLinks(TipprmiSequence<EthLinkClient> const& links)
{
    bool const isTaken = links.getLength() != 0 && links.getLength() <= mostLinks;
    if (isTaken) {
        links_ = links;
    }
    return isTaken;
}

// The one that management chose, while it carries; else the first that does.
EthLinkClient EthInterface::activeLink() const
{
    auto const isActive = [this](EthLinkClient const& link) { return carries(link); };
    auto const chosen = std::ranges::find_if(
        links_, [&](EthLinkClient const& link) { return link.isSameObject(preferred_) && isActive(link); });
    if (chosen != links_.end()) {
        return *chosen;
    }
    auto const first = std::ranges::find_if(links_, isActive);
    return first != links_.end() ? *first : links_[0];
}

Vlan const* EthInterface::addVlan(VlanIfNetClient::VlanIfNetCreateParams const& params)
{
    std::string const id = object().id() + "/Vlan/" + std::to_string(params.vlanId);
    std::string free = id;
    for (unsigned number = 2; inventory_.find(free) != nullptr; ++number) {
        free = id + '.' + std::to_string(number);
    }
    return addVlan(free, params);
}

Vlan const* EthInterface::addVlan(std::string const& objectId, VlanIfNetClient::VlanIfNetCreateParams const& params)
{
    if (vlans_.size() == mostVlans || find(params.vlanId) != nullptr || inventory_.find(objectId) != nullptr) {
        return nullptr;
    }
    vlans_.push_back(std::make_unique<Vlan>(
        inventory_, objectId, params,
        Vlan::Owner{[this](unsigned short id) { return find(id) == nullptr; }, [this] { return isUp(); }}));
    return vlans_.back().get();
}

// Of a VLAN whose identifier is taken at present, the next free one: what it is comes as a fact.
bool EthInterface::createVlan(std::string const& objectId)
{
    std::string const prefix = object().id() + "/Vlan/";
    std::string const place = objectId.substr(0, objectId.find('.', prefix.size()));
    long number = 0;
    if (!numberBehind(prefix, place, 0, greatestVlan, number)) {
        return false;
    }
    VlanIfNetClient::VlanIfNetCreateParams params{};
    params.vlanId = static_cast<unsigned short>(number);
    while (find(params.vlanId) != nullptr) {
        ++params.vlanId;
    }
    params.vlanInstanceId = params.vlanId;
    params.committedInfoRate = 10000;
    params.shaperBurstSize = VlanIfNetClient::SBS_MIN;
    return addVlan(objectId, params) != nullptr;
}

bool EthInterface::removeVlan(std::string const& objectId)
{
    return std::erase_if(vlans_, [&objectId](auto const& vlan) { return vlan->objectId() == objectId; }) != 0;
}

void EthInterface::carryPublicAddress(PublicAddress& address)
{
    servant().on<&IfNetClient::setPublicIpAddr>([this, &address](IfNetClient::IpAddrInfo const& info) {
        publicAddress() = info;
        address.announce(info.ipAddress);
        return SetClient::OK;
    });
    object().facts().addTold<&IfNetClient::getPublicIpAddr>(
        publicAddress(),
        [this, &address](IfNetClient::IpAddrInfo const& info) {
            publicAddress() = info;
            address.set(info.ipAddress);
            return true;
        },
        &operationOf<&IfNetClient::setPublicIpAddr>());
    auto const follow = [this, &address] {
        publicAddress().ipAddress = address.octets();
        object().changed();
    };
    addressChanges_.emplace(address.changes(), follow);
    follow();
}

int EthInterface::prefixOf(Address const& address, bool onlyUp) const
{
    int longest = isUp() || !onlyUp ? IpInterface::prefixOf(address) : -1;
    for (auto const& vlan : vlans_) {
        longest = vlan->isUp() || !onlyUp ? std::max(longest, vlan->prefixOf(address)) : longest;
    }
    return longest;
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
            if (!erase(find(id))) {
                return RunClient::FAILED;
            }
            say("VLAN " + std::to_string(id) + " deleted");
            return RunClient::OK;
        })
        .on<&EthIfNetClient::getVlanIfNet>([this](unsigned short const& id, VlanIfNetClient& found) {
            found = proxyOf(find(id));
            return statusOf<RunClient>(!found.getOID().isNull());
        })
        .on<&EthIfNetClient::setVlanTags>([](TipprmiSequence<unsigned short> const&) {}) // they are the VLANs' own
        .on<&EthIfNetClient::getVlanTags>([this] {
            TipprmiSequence<unsigned short> tags;
            for (Vlan const* const vlan : vlans()) {
                tags.push_back(vlan->id());
            }
            return tags;
        });
}

void EthInterface::serveFabric()
{
    fabric_.servant()
        .on<&QelFabricBaseClient::getSize>([this] { return static_cast<unsigned long>(vlans_.size()); })
        .on<&QelFabricBaseClient::getIndexes>([this] {
            TipprmiSequence<std::string> indexes;
            for (Vlan const* const vlan : vlans()) {
                indexes.push_back(indexOf(vlan));
            }
            return indexes;
        })
        .on<&VlanIfNetFabricClient::retrieve>([this](std::string const& index) { return proxyOf(find(index)); })
        .on<&VlanIfNetFabricClient::retrieveAll>([this] {
            TipprmiSequence<VlanIfNetClient> all;
            for (Vlan const* const vlan : vlans()) {
                all.push_back(vlan->proxy());
            }
            return all;
        })
        .on<&VlanIfNetFabricClient::retrieveFirst>([this](std::string& index) {
            Vlan const* const first = vlans_.empty() ? nullptr : vlans().front();
            index = indexOf(first);
            return proxyOf(first);
        })
        .on<&VlanIfNetFabricClient::retrieveNext>([this](std::string const& previous, std::string& index) {
            std::vector<Vlan const*> const all = vlans();
            auto const at = std::ranges::find(all, previous, indexOf);
            Vlan const* const next = at != all.end() && at + 1 != all.end() ? *(at + 1) : nullptr;
            index = indexOf(next);
            return proxyOf(next);
        })
        .on<&VlanIfNetFabricClient::create>(
            [this](std::string const& index, VlanIfNetClient::VlanIfNetCreateParams const& params) {
                return index == std::to_string(params.vlanId) ? proxyOf(addVlan(params)) : VlanIfNetClient();
            })
        .on<&VlanIfNetFabricClient::createWithIndex>(
            [this](std::string& index, VlanIfNetClient::VlanIfNetCreateParams const& params) {
                Vlan const* const vlan = addVlan(params);
                index = indexOf(vlan);
                return proxyOf(vlan);
            })
        .on<&VlanIfNetFabricClient::destroy>([this](std::string const& index) { erase(find(index)); })
        .on<&VlanIfNetFabricClient::destroyByInterface>(
            [this](VlanIfNetClient const& vlan) { removeVlan(vlan.getOID().getIdString()); });
}

std::vector<Vlan const*> EthInterface::vlans() const
{
    std::vector<Vlan const*> all;
    std::ranges::transform(vlans_, std::back_inserter(all), [](auto const& vlan) { return vlan.get(); });
    std::ranges::sort(all, {}, &Vlan::id);
    return all;
}

Vlan const* EthInterface::find(unsigned short id) const
{
    auto const found = std::ranges::find(vlans_, id, [](auto const& vlan) { return vlan->id(); });
    return found != vlans_.end() ? found->get() : nullptr;
}

Vlan const* EthInterface::find(std::string const& index) const
{
    auto const found = std::ranges::find(vlans_, index, [](auto const& vlan) { return indexOf(vlan.get()); });
    return found != vlans_.end() ? found->get() : nullptr;
}

bool EthInterface::erase(Vlan const* vlan)
{
    return std::erase_if(vlans_, [vlan](auto const& each) { return each.get() == vlan; }) != 0;
}

// Which identifier several VLANs have after facts were taken back.
std::string EthInterface::twice() const
{
    std::vector<Vlan const*> const all = vlans();
    auto const found = std::ranges::adjacent_find(all, {}, &Vlan::id);
    return found == all.end() ? ""
                              : (*found)->objectId() + " and " + (*(found + 1))->objectId() +
                                    " have the same VLAN identifier " + std::to_string((*found)->id());
}

} // namespace trs::sim
