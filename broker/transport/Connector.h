// The way to one endpoint.
#pragma once

#include "broker/transport/Address.h"
#include "broker/transport/Connection.h"

#include <memory>
#include <string>
#include <vector>

namespace trs {

class Connector {
public:
    explicit Connector(std::vector<SocketAddress> addresses) : addresses_(std::move(addresses)) {}

    // A connection whose greetings are exchanged, or null and why; `deadline.remaining()` tells whether it was the
    // time. Addresses are tried in their order.
    std::unique_ptr<Connection> connect(Deadline& deadline, std::string& why) const;

private:
    static int openSocket(SocketAddress const& address, Deadline const& deadline, std::string& why);
    static bool greet(Connection& connection, Deadline& deadline, std::string& why);

    std::vector<SocketAddress> const addresses_;
};

} // namespace trs
