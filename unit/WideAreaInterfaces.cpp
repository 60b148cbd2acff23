#include "unit/WideAreaInterfaces.h"

#include "unit/Journal.h"
#include "unit/Status.h"

#include <algorithm>
#include <type_traits>

namespace trs::sim {

namespace {

constexpr short mostOfAKind = 64;

template <class Interfaces>
bool erase(Interfaces& interfaces, TipprmiObjectClient const& doomed)
{
    bool const isErased = std::erase_if(interfaces, [&doomed](auto const& entry) {
                              return entry.second->proxy().isSameObject(doomed);
                          }) != 0;
    if (isErased) {
        say("interface " + doomed.getOID().getIdString() + " deleted");
    }
    return isErased;
}

} // namespace

class WideAreaInterfaces::Atm final : public IpInterface {
public:
    static constexpr char const* prefix = "IfNet/Atm/";

    Atm(Inventory& inventory, short number, short place, AtmIfNetCreateParam const& params)
        : IpInterface(inventory, reflect::className<AtmIfNetClient>, prefix + std::to_string(place), "atm", number,
                      params.ipAddress),
          trail_(params.vcTtp), hasLlcSnap_(params.llcSnap)
    {
        object().holds<&AtmIfNetClient::getLlcSnap, &AtmIfNetClient::setLlcSnap>(hasLlcSnap_);
        servant().on<&AtmIfNetClient::getVcTtp>([this] { return trail_; });
        object().facts().addTold<&AtmIfNetClient::getVcTtp>(trail_);
    }

    auto proxy() const { return object().proxy<AtmIfNetClient>(); }
    std::string name() const { return "atm" + proxy().getOID().getIdString().substr(std::string_view(prefix).size()); }

private:
    Aal5VirtualChannelTrailTpClient trail_;
    bool hasLlcSnap_;
};

class WideAreaInterfaces::Multilink final : public IpInterface {
public:
    static constexpr char const* prefix = "IfNet/Ppp/";

    Multilink(Inventory& inventory, short number, short place, Ip3IfNetClient::Cfg const& cfg)
        : IpInterface(inventory, reflect::className<Ip3IfNetClient>, prefix + std::to_string(place), "ppp", number,
                      cfg.ipAddrSequence.getLength() != 0 ? cfg.ipAddrSequence[0].ipAddress : Address{}),
          endpoint_(cfg.mlp3Endpoint)
    {
        object().tells<&Ip3IfNetClient::getMlp3Endpoint>(endpoint_);
        standOn([this] {
            auto* const endpoint = dynamic_cast<Managed*>(object().inventory().find(endpoint_.getOID().getIdString()));
            return endpoint == nullptr || endpoint->faults() == nullptr || endpoint->faults()->isEnabled();
        });
    }

    auto proxy() const { return object().proxy<Ip3IfNetClient>(); }

private:
    Mlp3EndpointClient endpoint_;
};

WideAreaInterfaces::WideAreaInterfaces(Inventory& inventory, Servant& ipNode, short firstNumber)
    : inventory_(inventory), firstNumber_(firstNumber)
{
    add(atm_, 1,
        AtmIfNetCreateParam{
            Aal5VirtualChannelTrailTpClient(TipprmiOID("Atm/Aal5Trail/1")), makeAddress(10, 3, 0, 7), {}, true, {}});
    Ip3IfNetClient::Cfg cfg{};
    cfg.mlp3Endpoint = Mlp3EndpointClient(TipprmiOID("PdhUnit-1/Mlp3Endpoint/1"));
    add(multilink_, 1, cfg);
    serveAtm(ipNode);
    serveMultilink(ipNode);
}

WideAreaInterfaces::~WideAreaInterfaces() = default;

// The interfaces at one place, one of either kind, have numbers that follow each other. Null when there is one, or no
// room.
template <class Kind, class Params>
Kind* WideAreaInterfaces::add(Interfaces<Kind>& interfaces, short place, Params const& params)
{
    if (place > mostOfAKind || interfaces.contains(place)) {
        return nullptr;
    }
    auto const number = static_cast<short>(firstNumber_ + 2 * (place - 1) + (std::is_same_v<Kind, Atm> ? 0 : 1));
    return interfaces.emplace(place, std::make_unique<Kind>(inventory_, number, place, params)).first->second.get();
}

template <class Kind>
short WideAreaInterfaces::freePlace(Interfaces<Kind> const& interfaces)
{
    short place = 1;
    while (interfaces.contains(place)) {
        ++place;
    }
    return place;
}

bool WideAreaInterfaces::create(std::string const& id, std::string_view className)
{
    long place = 0;
    if (className == reflect::className<AtmIfNetClient> && numberBehind(Atm::prefix, id, 1, mostOfAKind, place)) {
        return add(atm_, static_cast<short>(place), AtmIfNetCreateParam{}) != nullptr;
    }
    return className == reflect::className<Ip3IfNetClient> &&
           numberBehind(Multilink::prefix, id, 1, mostOfAKind, place) &&
           add(multilink_, static_cast<short>(place), Ip3IfNetClient::Cfg{}) != nullptr;
}

bool WideAreaInterfaces::remove(std::string const& id)
{
    TipprmiObjectClient const doomed{TipprmiOID(id)};
    return erase(atm_, doomed) || erase(multilink_, doomed);
}

void WideAreaInterfaces::serveAtm(Servant& ipNode)
{
    ipNode
        .on<&IpNodeClient::createAtmIfNet>([this](AtmIfNetCreateParam const& params, AtmIfNetClient& created) {
            Atm const* const made = add(atm_, freePlace(atm_), params);
            if (made == nullptr) {
                return RunClient::FAILED;
            }
            created = made->proxy();
            say("interface " + created.getOID().getIdString() + " created");
            return RunClient::OK;
        })
        .on<&IpNodeClient::deleteAtmIfNet>(
            [this](AtmIfNetClient const& doomed) { return statusOf<RunClient>(erase(atm_, doomed)); })
        .on<&IpNodeClient::getAtmIfNet>([this](std::string const& name, AtmIfNetClient& found) {
            auto const at =
                std::ranges::find_if(atm_, [&name](auto const& entry) { return entry.second->name() == name; });
            if (at == atm_.end()) {
                return GetClient::FAILED;
            }
            found = at->second->proxy();
            return GetClient::OK;
        });
}

void WideAreaInterfaces::serveMultilink(Servant& ipNode)
{
    ipNode
        .on<&IpNodeClient::createIp3IfNet>([this](Ip3IfNetClient::Cfg const& cfg, Ip3IfNetClient& created) {
            Multilink const* const made = add(multilink_, freePlace(multilink_), cfg);
            if (made == nullptr) {
                return RunClient::FAILED;
            }
            created = made->proxy();
            say("interface " + created.getOID().getIdString() + " created");
            return RunClient::OK;
        })
        .on<&IpNodeClient::deleteIp3IfNet>(
            [this](Ip3IfNetClient const& doomed) { return statusOf<RunClient>(erase(multilink_, doomed)); });
}

int WideAreaInterfaces::prefixOf(Address const& address, bool onlyUp) const
{
    int longest = -1;
    auto const look = [&](auto const& interfaces) {
        for (auto const& [place, each] : interfaces) {
            longest = each->isUp() || !onlyUp ? std::max(longest, each->prefixOf(address)) : longest;
        }
    };
    look(atm_);
    look(multilink_);
    return longest;
}

IfNetClient WideAreaInterfaces::interface(long number) const
{
    long const place = (number - firstNumber_) / 2 + 1;
    if (number < firstNumber_ || place > mostOfAKind) {
        return {};
    }
    if ((number - firstNumber_) % 2 == 0) {
        auto const found = atm_.find(static_cast<short>(place));
        return found != atm_.end() ? IfNetClient(found->second->proxy()) : IfNetClient();
    }
    auto const found = multilink_.find(static_cast<short>(place));
    return found != multilink_.end() ? IfNetClient(found->second->proxy()) : IfNetClient();
}

} // namespace trs::sim
