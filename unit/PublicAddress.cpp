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

void PublicAddress::set(std::string const& text)
{
    text_ = text;
    if (announce_) {
        announce_();
    }
}

} // namespace trs::sim
