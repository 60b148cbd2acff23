#include "unit/AccessServices.h"

#include "clients/ip/DhcpAccessClient.h"
#include "unit/Status.h"

#include <algorithm>

namespace trs::sim {

namespace {

auto at(Address const& address)
{
    return [&address](NtpAccessClient::NtpServer const& server) { return server.address == address; };
}

} // namespace

AccessServices::AccessServices(Inventory& inventory, PublicAddress const& address)
    : ntp_(inventory, "Access/Ntp", reflect::className<NtpAccessClient>),
      dhcp_(inventory, "Access/Dhcp", reflect::className<DhcpAccessClient>)
{
    serveNtp();
    dhcp_.servant()
        .on<&DhcpAccessClient::GetPublicIpAddress>([&address](Address& told) { told = address.octets(); })
        .on<&DhcpAccessClient::GetPublicIpMask>([&address](Address& told) {
            bool const isThere = addressNumber(address.octets()) != 0;
            told = isThere ? makeAddress(255, 255, 255, 0) : makeAddress(0, 0, 0, 0);
        });
}

void AccessServices::serveNtp()
{
    auto const tell = [this](Servers& told) {
        told = servers_;
        return GetClient::OK;
    };
    ntp_.servant()
        .on<&NtpAccessClient::getNtpServerSequence>(tell)
        .on<&NtpAccessClient::getNtpDaemon>(tell)
        .on<&NtpAccessClient::setNtpDaemon>(
            [this](Servers const& servers) { return statusOf<SetClient>(replace(servers)); })
        .on<&NtpAccessClient::createNtpServer>(
            [this](Address const& address, short const& value) { return statusOf<RunClient>(insert(address, value)); })
        .on<&NtpAccessClient::deleteNtpServer>(
            [this](Address const& address) { return statusOf<RunClient>(remove(address)); })
        .on<&NtpAccessClient::setNtpDaemonStatus>(
            [this](TipprmiSequence<NtpAccessClient::NtpServerStatus> const& statuses) {
                if (statuses.getLength() != servers_.getLength()) { // one for each server
                    return SetClient::FAILED;
                }
                for (unsigned long i = 0; i < statuses.getLength(); ++i) {
                    servers_[i].status = statuses[i];
                }
                return SetClient::OK;
            });
    ntp_.facts().addTold<&NtpAccessClient::getNtpServerSequence>(
        servers_, [this](Servers const& servers) { return replace(servers); },
        &operationOf<&NtpAccessClient::setNtpDaemon>());
}

// Each address once.
bool AccessServices::replace(Servers const& servers)
{
    bool const isSound = servers.getLength() <= NtpAccessClient::MAX_NTPSERVERS &&
                         std::ranges::all_of(servers, [&servers](Server const& server) {
                             return std::ranges::count_if(servers, at(server.address)) == 1;
                         });
    if (isSound) {
        servers_ = servers;
    }
    return isSound;
}

bool AccessServices::insert(Address const& address, short value)
{
    Servers servers = servers_;
    Server server{};
    server.address = address;
    server.value1 = value;
    servers.push_back(server);
    return replace(servers);
}

bool AccessServices::remove(Address const& address)
{
    auto const kept = std::remove_if(servers_.begin(), servers_.end(), at(address));
    bool const isFound = kept != servers_.end();
    servers_.setLength(static_cast<unsigned long>(kept - servers_.begin()));
    return isFound;
}

} // namespace trs::sim
