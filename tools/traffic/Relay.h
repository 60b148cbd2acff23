// Stands between processes and a unit, and tells what passes.
#pragma once

#include "broker/transport/Endpoint.h"
#include "tools/traffic/Conversation.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace trs::traffic {

// Carries the bytes of each connection to the unit and back, unchanged and at once. A client that cannot be served, as
// the unit is not reached, is told why in the greeting's place.
class Relay {
public:
    // Is told of bytes that pass, before they are passed on; connections are numbered from 1 on. In the end it is told
    // of none, once for each direction. False ends the relay, once these bytes are passed on. It is told on several
    // threads, one at a time.
    using Tap = std::function<bool(std::uint32_t connection, Direction direction, std::string_view bytes)>;
    // Is told why a connection could not be carried on, on any thread.
    using Complain = std::function<void(std::string const& why)>;

    Relay(Endpoint listen, Endpoint unit, Tap tap, Complain complain);
    Relay(Relay const&) = delete;
    Relay& operator=(Relay const&) = delete;
    ~Relay();

    // Empty, or why it cannot listen. From now on SIGINT and SIGTERM end the relay and nothing else.
    std::string open();
    // What it listens on, with the port that the system chose.
    std::string endpoint() const;
    // Until a signal or the tap ends it, or the time is over.
    void run(std::optional<std::chrono::milliseconds> time);

private:
    class Parts;
    class Pair;
    std::unique_ptr<Parts> parts_;
};

} // namespace trs::traffic
