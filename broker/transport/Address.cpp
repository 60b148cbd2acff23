#include "broker/transport/Address.h"

#include "platform/NmaLogHelper.h"

#include <asio/ip/tcp.hpp>
#include <asio/local/stream_protocol.hpp>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <system_error>

namespace trs {

std::string resolve(asio::io_context& context, Endpoint const& endpoint, std::vector<SocketAddress>& addresses)
{
    addresses.clear();
    if (endpoint.kind == Endpoint::Kind::local) {
        addresses.emplace_back(asio::local::stream_protocol::endpoint(endpoint.path));
        return {};
    }
    asio::error_code error;
    asio::ip::tcp::resolver resolver(context);
    auto const found =
        resolver.resolve(endpoint.host, std::to_string(endpoint.port), asio::ip::resolver_base::numeric_service, error);
    for (auto const& entry : found) {
        addresses.emplace_back(entry.endpoint());
    }
    if (addresses.empty()) {
        return LogMakeString("endpoint '%s': the host '%s' has no address: %s", endpoint.text().c_str(),
                             endpoint.host.c_str(), error.message().c_str());
    }
    return {};
}

void configureSocket(int descriptor, int family)
{
    ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    int const flags = ::fcntl(descriptor, F_GETFL);
    ::fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK);
    if (family == AF_UNIX) {
        return;
    }
    auto const set = [descriptor](int level, int option, int value) {
        ::setsockopt(descriptor, level, option, &value, sizeof value);
    };
    set(IPPROTO_TCP, TCP_NODELAY, 1);
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, 30);
    set(IPPROTO_TCP, TCP_KEEPINTVL, 10);
    set(IPPROTO_TCP, TCP_KEEPCNT, 3);
}

std::string systemErrorText(int error) { return std::generic_category().message(error); }

} // namespace trs
