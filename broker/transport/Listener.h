// One endpoint that the server listens on.
#pragma once

#include "broker/transport/Address.h"
#include "broker/transport/Endpoint.h"

#include <asio/basic_socket_acceptor.hpp>
#include <asio/steady_timer.hpp>

#include <functional>
#include <string>
#include <sys/stat.h>

namespace trs {

class Listener {
public:
    // Is handed the descriptor of every accepted connection, on the thread that runs the context.
    using Admit = std::function<void(int descriptor)>;

    Listener(asio::io_context& context, Endpoint endpoint);
    Listener(Listener const&) = delete;
    Listener& operator=(Listener const&) = delete;
    // The context no longer runs.
    ~Listener();

    // Empty, or why the endpoint cannot be listened on.
    std::string open();
    // Accepts connections from now on. On the thread that runs the context.
    void start(Admit admit);
    // The endpoint with the port that the system chose.
    Endpoint const& endpoint() const { return endpoint_; }

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
