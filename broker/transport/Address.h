// Endpoints as the socket calls take them.
#pragma once

#include "broker/transport/Endpoint.h"

#include <asio/generic/stream_protocol.hpp>
#include <asio/io_context.hpp>

#include <string>
#include <vector>

namespace trs {

using SocketAddress = asio::generic::stream_protocol::endpoint;

// The addresses of an endpoint: several when a host's name has several. Empty, or what is wrong. Names are looked up
// here and never during a call, because a look-up knows no deadline.
std::string resolve(asio::io_context& context, Endpoint const& endpoint, std::vector<SocketAddress>& addresses);

// What both ends of a connection want of its socket: no transfer by small steps, and an end some time after the other
// machine has vanished.
void configureSocket(int descriptor, int family);

std::string systemErrorText(int error);

} // namespace trs
