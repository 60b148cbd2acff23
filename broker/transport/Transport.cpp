#include "broker/transport/Transport.h"

#include "broker/transport/MemoryTransport.h"
#include "broker/transport/SocketDialer.h"
#include "broker/transport/SocketListener.h"

#include <asio/io_context.hpp>

namespace trs {

std::unique_ptr<Listener> makeListener(asio::io_context& context, Endpoint const& endpoint)
{
    if (endpoint.kind == Endpoint::Kind::memory) {
        return std::make_unique<MemoryListener>(context, endpoint);
    }
    return std::make_unique<SocketListener>(context, endpoint);
}

std::unique_ptr<Dialer> makeDialer(Endpoint const& endpoint, std::string& why)
{
    if (endpoint.kind == Endpoint::Kind::memory) {
        return std::make_unique<MemoryDialer>(endpoint);
    }
    std::vector<SocketAddress> addresses;
    why = complaintOf(endpoint, [&] {
        asio::io_context context;
        return resolve(context, endpoint, addresses);
    });
    return why.empty() ? std::make_unique<SocketDialer>(std::move(addresses)) : nullptr;
}

} // namespace trs
