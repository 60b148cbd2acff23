// An IP interface of the simulated unit: what IfNetClient reaches, of whatever kind the interface is.
#pragma once

#include "clients/ip/IfNetClient.h"
#include "unit/Managed.h"

#include <string>

namespace trs::sim {

using Address = TipprmiArray<short, 4>;

Address makeAddress(short first, short second, short third, short fourth);

// Its attributes keep what they are set to. While it is not up and running, its conditions DownEgress and DownIngress
// are active.
class Interface {
public:
    Interface(Inventory& inventory, std::string_view className, std::string const& id, std::string name, short number,
              Address const& address);
    Interface(Interface const&) = delete;
    Interface& operator=(Interface const&) = delete;

protected:
    ~Interface() = default;
    Servant& servant() { return servant_; }
    Servant const& servant() const { return servant_; }
    void setFirstAddress(Address const& address);
    void clearAddresses() { addresses_.setLength(0); }

private:
    void setFlags(unsigned short flags);

    std::string const name_;
    short const number_;
    long mtu_ = 1500;         // bytes
    long internalMtu_ = 1500; // bytes
    unsigned short flags_ = IfNetClient::IFF__UP | IfNetClient::IFF__RUNNING;
    bool discardsPrivate_ = false;
    bool discardsPublic_ = false;
    TipprmiSequence<IfNetClient::IpAddrInfo> addresses_;
    IfNetClient::IpAddrInfo private_{};
    IfNetClient::IpAddrInfo public_{};
    Servant servant_;
    Managed managed_;
};

} // namespace trs::sim
