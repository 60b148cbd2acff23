#include "platform/TipprmiString.h"

#include "platform/TipprmiStream.h"
#include "rmi/ByteOrder.h"

TipprmiStream& operator<<(TipprmiStream& stream, std::string const& value)
{
    unsigned char* const place = stream.extend(4 + value.size());
    wire::store(place, static_cast<std::uint32_t>(value.size()));
    std::memcpy(place + 4, value.data(), value.size());
    return stream;
}

TipprmiStream& operator>>(TipprmiStream& stream, std::string& value)
{
    if (unsigned char const* const count = stream.take(4)) {
        auto const length = wire::load<std::uint32_t>(count);
        if (unsigned char const* const place = stream.take(length)) {
            value.assign(reinterpret_cast<char const*>(place), length);
        }
    }
    return stream;
}
