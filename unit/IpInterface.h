// An IP interface of the simulated unit: what IfNetClient reaches, of whatever kind the interface is.
#pragma once

#include "clients/ip/IfNetClient.h"
#include "unit/Managed.h"
#include "unit/Signal.h"

#include <string>

namespace trs::sim {

using Address = TipprmiArray<short, 4>;

Address makeAddress(short first, short second, short third, short fourth);
// "10.0.0.1"
std::string addressText(Address const& address);
// The first octet in the most significant byte.
std::uint32_t addressNumber(Address const& address);

// Runs while what it stands on does: then its flags tell IFF__RUNNING. While it is not both up and running, its
// conditions DownEgress and DownIngress are active and its counters stand still.
class IpInterface {
public:
    IpInterface(Inventory& inventory, std::string_view className, std::string const& id, std::string name, short number,
                Address const& address);
    IpInterface(IpInterface const&) = delete;
    IpInterface& operator=(IpInterface const&) = delete;

    bool isUp() const;
    // How long the prefix of the network is that an address is in, of those of the interface's own addresses; -1: none.
    int prefixOf(Address const& address) const;

protected:
    ~IpInterface() = default;
    Managed& object() { return object_; }
    Managed const& object() const { return object_; }
    Servant& servant() { return object_.servant(); }
    void setFirstAddress(Address const& address);
    // Has `take` get the first address, 0.0.0.0 when there is none, whenever management has set the addresses.
    void onAddresses(std::function<void(Address const&)> take) { takeFirstAddress_ = std::move(take); }
    IfNetClient::IpAddrInfo& publicAddress() { return public_; }
    void clearAddresses();
    // What tells whether the interface can run. To be followed by lookBelow().
    void standOn(std::function<bool()> isRunning) { isRunning_ = std::move(isRunning); }
    // Looks whether the interface can still run, and draws the consequences.
    void lookBelow();

private:
    unsigned short flags() const;
    void tellAddresses() const;

    std::string name_;
    short number_;
    long mtu_ = 1500;                                                         // bytes
    long internalMtu_ = 1500;                                                 // bytes
    unsigned short flags_ = IfNetClient::IFF__UP | IfNetClient::IFF__RUNNING; // as they were set
    bool discardsPrivate_ = false;
    bool discardsPublic_ = false;
    TipprmiSequence<IfNetClient::IpAddrInfo> addresses_;
    IfNetClient::IpAddrInfo private_{};
    IfNetClient::IpAddrInfo public_{};
    std::function<void(Address const&)> takeFirstAddress_;
    std::function<bool()> isRunning_;
    bool wasUp_ = true;
    Managed object_;
    Signal::Subscription const states_;
};

} // namespace trs::sim
