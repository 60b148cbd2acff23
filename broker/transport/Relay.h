// Stands between processes and a server, and tells what passes.
#pragma once

#include "broker/transport/Endpoint.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace trs {

enum class Direction { toServer, fromServer };

// Carries the bytes of each connection to the server and back, unchanged and at once.
class Relay {
public:
    // Is told of bytes that pass, before they are passed on; connections are numbered from 1 on. In the end it is told
    // of none, once for each direction. False ends the relay, once these bytes are passed on. It is told on several
    // threads, one at a time.
    using Tap = std::function<bool(std::uint32_t connection, Direction direction, std::string_view bytes)>;

    // Is told why a connection could not be carried on, as the server is not reached.
    using Complain = std::function<void(std::string const& why)>;

    Relay(Endpoint const& listen, Endpoint server, Tap tap, Complain complain);
    Relay(Relay const&) = delete;
    Relay& operator=(Relay const&) = delete;
    ~Relay();

    // Empty, or why it cannot listen.
    std::string open();
    // What it listens on, with the port that the system chose.
    std::string endpoint() const;
    // Until SIGINT or SIGTERM comes, the tap ends it, or the time is over.
    void run(std::optional<std::chrono::milliseconds> time);

private:
    class Parts;
    class Pair;
    std::unique_ptr<Parts> parts_;
};

} // namespace trs
