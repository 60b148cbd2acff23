// Who has connected a socket.
#pragma once

#include "broker/Principal.h"

namespace trs {

// The user at the other end of a Unix socket and the user's groups, as the kernel noted them when it was connected; of
// other sockets nobody, and the address. A user or group without a name is told by its number. The process identifier
// is left out: it may be another's by now.
Principal principalOf(int descriptor);

// "10.0.0.7:40312" or "[::1]:40312"; empty for other sockets.
std::string peerAddress(int descriptor);

} // namespace trs
