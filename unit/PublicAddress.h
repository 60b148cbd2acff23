// The unit's public address: the agent tells it, and so do the IP node's entry "btsIpPrimary", the transport interface
// and the DHCP service.
#pragma once

#include "unit/Interface.h"

#include <functional>
#include <string>

namespace trs::sim {

// May be any text; an address other than a dotted one has the octets 0.0.0.0, as none has.
class PublicAddress {
public:
    explicit PublicAddress(std::string text) : text_(std::move(text)) {}

    std::string& text() { return text_; }
    std::string const& text() const { return text_; }
    Address octets() const;
    // Management sets it through an object other than the agent, which announces it.
    void set(std::string const& text);
    void setAnnouncer(std::function<void()> announce) { announce_ = std::move(announce); }

private:
    std::string text_;
    std::function<void()> announce_;
};

} // namespace trs::sim
