// The unit's public address: the agent tells it, and so do the IP node's entry "btsIpPrimary", the transport interface
// and the DHCP service.
#pragma once

#include "unit/IpInterface.h"
#include "unit/Signal.h"

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
    // Without telling management.
    void set(std::string const& text);
    // The same by octets, where they are others than the address has.
    void set(Address const& octets);
    // Sets it, and has the agent announce it.
    void announce(std::string const& text);
    // Management sets it through an object other than the agent; the same where it is set already.
    void announce(Address const& octets);

    void setAnnouncer(std::function<void()> announce) { announce_ = std::move(announce); }
    // Given when it was set, to the objects that tell it.
    Signal& changes() { return changes_; }

private:
    static std::string textOf(Address const& octets);

    std::string text_;
    std::function<void()> announce_;
    Signal changes_;
};

} // namespace trs::sim
