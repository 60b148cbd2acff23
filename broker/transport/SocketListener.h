// Listens on unix: and tcp: endpoints.
#pragma once

#include "broker/transport/Address.h"
#include "broker/transport/Listener.h"

#include <asio/basic_socket_acceptor.hpp>
#include <asio/steady_timer.hpp>

#include <string>
#include <sys/stat.h>

namespace trs {

class SocketListener final : public Listener {
public:
    SocketListener(asio::io_context& context, Endpoint endpoint);
    ~SocketListener() override;

    std::string open() override;
    void start(Admit admit) override;
    Endpoint const& endpoint() const override { return endpoint_; }

private:
    using Acceptor = asio::basic_socket_acceptor<asio::generic::stream_protocol>;

    std::string openLocal(SocketAddress const& address);
    std::string openTcp(SocketAddress const& address);
    bool removeStaleSocket(SocketAddress const& address, std::string& why) const;
    std::string failure(asio::error_code const& error) const;
    void accept();

    Endpoint endpoint_;
    Admit admit_;
    Acceptor acceptor_;
    asio::steady_timer pause_;
    bool isExhausted_ = false;  // the process has no descriptor left, and that was logged
    struct stat socketFile_ {}; // of a local endpoint, to remove no other's in the end
    bool hasSocketFile_ = false;
};

} // namespace trs
