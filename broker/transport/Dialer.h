// The ways to one endpoint, whatever its transport.
#pragma once

#include "broker/transport/Cut.h"

#include <cstddef>
#include <memory>
#include <string>

namespace trs {

class Dialer {
public:
    Dialer(Dialer const&) = delete;
    Dialer& operator=(Dialer const&) = delete;
    virtual ~Dialer() = default;

    // How many ways there are, such as the addresses of a host; they are tried in their order.
    virtual std::size_t ways() const = 0;
    // A channel by that way, or null and why. Gives up when it is cut.
    virtual std::unique_ptr<Channel> dial(std::size_t way, Deadline& deadline, Cut const& cut,
                                          std::string& why) const = 0;

    // Begins a channel by that way, without waiting: it can be sent to once there is a connection, or has failed
    // (Channel::connectFailure). Null and why; then `isTooEarly` tells whether it is only that the other side is busy.
    virtual std::unique_ptr<Channel> begin(std::size_t way, bool& isTooEarly, std::string& why) const = 0;

protected:
    Dialer() = default;
};

} // namespace trs
