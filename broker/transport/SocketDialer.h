// The way to unix: and tcp: endpoints.
#pragma once

#include "broker/transport/Address.h"
#include "broker/transport/Dialer.h"

#include <vector>

namespace trs {

class SocketDialer final : public Dialer {
public:
    explicit SocketDialer(std::vector<SocketAddress> addresses) : addresses_(std::move(addresses)) {}

    std::size_t ways() const override { return addresses_.size(); }
    std::unique_ptr<Channel> dial(std::size_t way, Deadline& deadline, Cut const& cut, std::string& why) const override;
    std::unique_ptr<Channel> begin(std::size_t way, bool& isTooEarly, std::string& why) const override;

private:
    std::vector<SocketAddress> const addresses_;
};

} // namespace trs
