// Listens on any number of endpoints, on a thread of its own.
#pragma once

#include "broker/transport/Channel.h"
#include "broker/transport/Endpoint.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trs {

class Acceptor {
public:
    // Is handed every connection, on the acceptor's thread, with the endpoint that it came to.
    using Admit = std::function<void(std::unique_ptr<Channel> channel, std::string const& endpoint)>;

    explicit Acceptor(Admit admit);
    Acceptor(Acceptor const&) = delete;
    Acceptor& operator=(Acceptor const&) = delete;
    // Stops.
    ~Acceptor();

    // Empty, or why the endpoint cannot be served.
    std::string listen(Endpoint const& endpoint);
    // With the ports that the system chose.
    std::vector<std::string> endpoints() const;
    // Has `act` called on the acceptor's thread after that time, unless it has stopped by then. From any thread, once
    // something is listened on.
    void after(std::chrono::nanoseconds delay, std::function<void()> act);
    // Nothing is handed over or called any more, nor listened on again.
    void stop();

private:
    struct Parts;
    std::string listenTo(Endpoint const& endpoint);

    Admit const admit_;
    std::unique_ptr<Parts> parts_; // null until there is something to listen on
};

} // namespace trs
