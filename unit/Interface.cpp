#include "unit/Interface.h"

#include "unit/Setting.h"

#include <utility>

namespace trs::sim {

Address makeAddress(short first, short second, short third, short fourth)
{
    Address address;
    address[0] = first;
    address[1] = second;
    address[2] = third;
    address[3] = fourth;
    return address;
}

Interface::Interface(Inventory& inventory, std::string_view className, std::string const& id, std::string name,
                     short number, Address const& address)
    : name_(std::move(name)), number_(number), servant_(TipprmiOID(id)), managed_(inventory, servant_, className)
{
    setFirstAddress(address);
    servant_
        .on<&IfNetClient::getUnitName>([this](std::string& unitName) {
            unitName = name_;
            return GetClient::OK;
        })
        .on<&IfNetClient::getUnitNumber>([this](short& unitNumber) {
            unitNumber = number_;
            return GetClient::OK;
        })
        .on<&IfNetClient::getVokIpForSctp>([this](Address& first) {
            if (addresses_.getLength() == 0) {
                return GetClient::FAILED;
            }
            first = addresses_[0].ipAddress;
            return GetClient::OK;
        });
    serveSetting<&IfNetClient::getMtu, &IfNetClient::setMtu>(servant_, mtu_);
    serveSetting<&IfNetClient::getInternalMtu, &IfNetClient::setInternalMtu>(servant_, internalMtu_);
    servant_
        .on<&IfNetClient::getFlags>([this](unsigned short& flags) {
            flags = flags_;
            return GetClient::OK;
        })
        .on<&IfNetClient::setFlags>([this](unsigned short const& flags) {
            setFlags(flags);
            return SetClient::OK;
        });
    serveSetting<&IfNetClient::getDiscardPrivate, &IfNetClient::setDiscardPrivate>(servant_, discardsPrivate_);
    serveSetting<&IfNetClient::getDiscardPublic, &IfNetClient::setDiscardPublic>(servant_, discardsPublic_);
    serveSetting<&IfNetClient::getIpAddrSequence, &IfNetClient::setIpAddrSequence>(servant_, addresses_);
    serveSetting<&IfNetClient::getPrivateIpAddr, &IfNetClient::setPrivateIpAddr>(servant_, private_);
    serveSetting<&IfNetClient::getPublicIpAddr, &IfNetClient::setPublicIpAddr>(servant_, public_);
}

// Observers of the conditions are told, as of everything that their proxies do.
void Interface::setFlags(unsigned short flags)
{
    constexpr unsigned up = IfNetClient::IFF__UP | IfNetClient::IFF__RUNNING;
    bool const wasUp = (flags_ & up) == up;
    bool const isUp = (flags & up) == up;
    flags_ = flags;
    for (char const* const name : {"DownEgress", "DownIngress"}) {
        if (Condition* const condition = managed_.faults()->condition(name); wasUp != isUp && condition != nullptr) {
            isUp ? condition->proxy().cancel() : condition->proxy().raise();
        }
    }
}

void Interface::setFirstAddress(Address const& address)
{
    if (addresses_.getLength() == 0) {
        addresses_.setLength(1);
    }
    addresses_[0].ipAddress = address;
}

} // namespace trs::sim
