#include "unit/IpInterface.h"

#include "unit/Journal.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace trs::sim {

namespace {

constexpr unsigned runs = IfNetClient::IFF__UP | IfNetClient::IFF__RUNNING;

// An interface says its mask as the second address of an entry; without one its network is the 256 addresses around.
std::uint32_t maskOf(IfNetClient::IpAddrInfo const& info)
{
    constexpr std::uint32_t usual = 0xffffff00;
    std::uint32_t const mask = addressNumber(info.address2);
    return mask != 0 && std::countl_one(mask) + std::countr_zero(mask) == 32 ? mask : usual;
}

} // namespace

Address makeAddress(short first, short second, short third, short fourth)
{
    Address address;
    address[0] = first;
    address[1] = second;
    address[2] = third;
    address[3] = fourth;
    return address;
}

std::string addressText(Address const& address)
{
    std::string text = std::to_string(address[0]);
    for (unsigned long i = 1; i < 4; ++i) {
        text += '.' + std::to_string(address[i]);
    }
    return text;
}

std::uint32_t addressNumber(Address const& address)
{
    std::uint32_t number = 0;
    for (unsigned long i = 0; i < 4; ++i) {
        number = number << 8 | static_cast<std::uint8_t>(address[i]);
    }
    return number;
}

IpInterface::IpInterface(Inventory& inventory, std::string_view className, std::string const& id, std::string name,
                         short number, Address const& address)
    : name_(std::move(name)), number_(number), object_(inventory, id, className),
      states_(inventory.states(), [this] { lookBelow(); })
{
    setFirstAddress(address);
    object_.tells<&IfNetClient::getUnitName>(name_);
    object_.tells<&IfNetClient::getUnitNumber>(number_);
    object_.holds<&IfNetClient::getMtu, &IfNetClient::setMtu>(mtu_);
    object_.holds<&IfNetClient::getInternalMtu, &IfNetClient::setInternalMtu>(internalMtu_);
    object_.holds<&IfNetClient::getDiscardPrivate, &IfNetClient::setDiscardPrivate>(discardsPrivate_);
    object_.holds<&IfNetClient::getDiscardPublic, &IfNetClient::setDiscardPublic>(discardsPublic_);
    object_.holds<&IfNetClient::getIpAddrSequence, &IfNetClient::setIpAddrSequence>(addresses_,
                                                                                    [this] { tellAddresses(); });
    object_.facts().addTold<&IfNetClient::getIpAddrSequence>(
        addresses_,
        [this](TipprmiSequence<IfNetClient::IpAddrInfo> const& addresses) {
            addresses_ = addresses;
            tellAddresses();
            return true;
        },
        &operationOf<&IfNetClient::setIpAddrSequence>());
    object_.holds<&IfNetClient::getPrivateIpAddr, &IfNetClient::setPrivateIpAddr>(private_);
    object_.holds<&IfNetClient::getPublicIpAddr, &IfNetClient::setPublicIpAddr>(public_);
    servant()
        .on<&IfNetClient::getFlags>([this](unsigned short& told) {
            told = flags();
            return GetClient::OK;
        })
        .on<&IfNetClient::setFlags>([this](unsigned short const& set) {
            flags_ = set;
            lookBelow();
            return SetClient::OK;
        })
        .on<&IfNetClient::getVokIpForSctp>([this](Address& first) {
            if (addresses_.getLength() == 0) {
                return GetClient::FAILED;
            }
            first = addresses_[0].ipAddress;
            return GetClient::OK;
        });
    object_.facts().addGiven<&IfNetClient::setFlags>(flags_);
    object_.facts().alias(operationOf<&IfNetClient::getFlags>().name, operationOf<&IfNetClient::setFlags>().name);
    object_.facts().add("isUp", wasUp_);
    object_.onSettle([this] {
        lookBelow();
        return std::string();
    });
}

bool IpInterface::isUp() const { return (flags() & runs) == runs; }

unsigned short IpInterface::flags() const
{
    constexpr unsigned short running = IfNetClient::IFF__RUNNING;
    return !isRunning_ || isRunning_() ? flags_ : static_cast<unsigned short>(flags_ & ~running);
}

// Observers of the conditions are told, as of everything that their proxies do. What stands on this interface is told
// by the change of its fault service's state, which the conditions bring about, and by the signal.
void IpInterface::lookBelow()
{
    bool const isUpNow = isUp();
    if (wasUp_ == isUpNow) {
        return;
    }
    wasUp_ = isUpNow;
    object_.changed();
    say("interface " + object_.id() + (isUpNow ? " is up" : " is down"));
    object_.performance()->setPassing(isUpNow);
    for (char const* const name : {"DownEgress", "DownIngress"}) {
        if (Condition const* const condition = object_.faults()->condition(name)) {
            isUpNow ? condition->proxy().cancel() : condition->proxy().raise();
        }
    }
    object_.inventory().states().give();
}

int IpInterface::prefixOf(Address const& address) const
{
    int longest = -1;
    for (IfNetClient::IpAddrInfo const& own : addresses_) {
        std::uint32_t const mask = maskOf(own);
        bool const isIn = addressNumber(own.ipAddress) != 0 &&
                          (addressNumber(own.ipAddress) & mask) == (addressNumber(address) & mask);
        longest = isIn ? std::max(longest, std::popcount(mask)) : longest;
    }
    return longest;
}

void IpInterface::clearAddresses()
{
    addresses_.setLength(0);
    tellAddresses();
}

void IpInterface::tellAddresses() const
{
    if (takeFirstAddress_) {
        takeFirstAddress_(addresses_.getLength() != 0 ? addresses_[0].ipAddress : Address{});
    }
}

void IpInterface::setFirstAddress(Address const& address)
{
    if (addresses_.getLength() == 0 && addressNumber(address) == 0) {
        return;
    }
    if (addresses_.getLength() == 0) {
        addresses_.setLength(1);
    }
    addresses_[0].ipAddress = address;
}

} // namespace trs::sim
