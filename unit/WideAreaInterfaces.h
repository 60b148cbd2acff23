// The ATM and the multilink PPP interfaces of the simulated unit, which management creates and deletes: what
// AtmIfNetClient and Ip3IfNetClient reach.
#pragma once

#include "clients/ip/IpNodeClient.h"
#include "unit/IpInterface.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace trs::sim {

// One of either kind is there from the start.
class WideAreaInterfaces {
public:
    // Serves the operations of the IP node that create, delete and hand out these interfaces. Interfaces are numbered
    // from `firstNumber` on.
    WideAreaInterfaces(Inventory& inventory, Servant& ipNode, short firstNumber);
    WideAreaInterfaces(WideAreaInterfaces const&) = delete;
    WideAreaInterfaces& operator=(WideAreaInterfaces const&) = delete;
    ~WideAreaInterfaces();

    // By the identifier that the interface is to have; false when that is none of either kind, or there already.
    bool create(std::string const& id, std::string_view className);
    bool remove(std::string const& id);

    // Unbound when there is none of that number.
    IfNetClient interface(long number) const;
    // As EthInterface::prefixOf().
    int prefixOf(Address const& address, bool onlyUp) const;

private:
    class Atm;
    class Multilink;

    template <class Kind>
    using Interfaces = std::map<short, std::unique_ptr<Kind>>; // by place, from 1 on

    template <class Kind, class Params>
    Kind* add(Interfaces<Kind>& interfaces, short place, Params const& params);
    template <class Kind>
    static short freePlace(Interfaces<Kind> const& interfaces);
    void serveAtm(Servant& ipNode);
    void serveMultilink(Servant& ipNode);

    Inventory& inventory_;
    short const firstNumber_;
    Interfaces<Atm> atm_;
    Interfaces<Multilink> multilink_;
};

} // namespace trs::sim
