// One endpoint that is listened on, whatever its transport.
#pragma once

#include "broker/transport/Channel.h"
#include "broker/transport/Endpoint.h"

#include <functional>
#include <memory>
#include <string>

namespace trs {

class Listener {
public:
    // Is handed every accepted connection, on the thread that runs the listener's context.
    using Admit = std::function<void(std::unique_ptr<Channel> channel)>;

    Listener(Listener const&) = delete;
    Listener& operator=(Listener const&) = delete;
    // The context no longer runs.
    virtual ~Listener() = default;

    // Empty, or why the endpoint cannot be listened on.
    virtual std::string open() = 0;
    // Accepts connections from now on. On the thread that runs the context.
    virtual void start(Admit admit) = 0;
    // The endpoint with the port that the system chose.
    virtual Endpoint const& endpoint() const = 0;

protected:
    Listener() = default;
};

} // namespace trs
