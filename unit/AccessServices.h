// The access services of the simulated unit that know something: what NtpAccessClient and DhcpAccessClient reach.
#pragma once

#include "clients/ip/NtpAccessClient.h"
#include "unit/Managed.h"
#include "unit/PublicAddress.h"

namespace trs::sim {

class AccessServices {
public:
    AccessServices(Inventory& inventory, PublicAddress const& address);
    AccessServices(AccessServices const&) = delete;
    AccessServices& operator=(AccessServices const&) = delete;

private:
    using Server = NtpAccessClient::NtpServer;
    using Servers = TipprmiSequence<Server>;

    void serveNtp();
    bool replace(Servers const& servers);
    bool insert(Address const& address, short value);
    bool remove(Address const& address);

    Servers servers_; // that are configured, and that the daemon asks
    Managed ntp_;
    Managed dhcp_;
};

} // namespace trs::sim
