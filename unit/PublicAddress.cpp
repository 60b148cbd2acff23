#include "unit/PublicAddress.h"

#include <arpa/inet.h>
#include <array>

namespace trs::sim {

Address PublicAddress::octets() const
{
    std::array<unsigned char, 4> octets{};
    return ::inet_pton(AF_INET, text_.c_str(), octets.data()) == 1
               ? makeAddress(octets[0], octets[1], octets[2], octets[3])
               : makeAddress(0, 0, 0, 0);
}

std::string PublicAddress::textOf(Address const& octets)
{
    return addressNumber(octets) == 0 ? std::string() : addressText(octets);
}

void PublicAddress::set(std::string const& text)
{
    text_ = text;
    changes_.give();
}

void PublicAddress::set(Address const& octets)
{
    if (octets != this->octets()) {
        set(textOf(octets));
    }
}

void PublicAddress::announce(std::string const& text)
{
    set(text);
    if (announce_) {
        announce_();
    }
}

void PublicAddress::announce(Address const& octets)
{
    if (octets != this->octets()) {
        announce(textOf(octets));
    }
}

} // namespace trs::sim
