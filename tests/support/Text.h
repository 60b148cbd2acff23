// Texts that tests make.
#pragma once

#include <cstddef>
#include <string>

namespace support {

inline std::string repeated(std::string const& piece, std::size_t times)
{
    std::string text;
    text.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

} // namespace support
