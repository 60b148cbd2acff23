#include "broker/PrintableText.h"

#include "platform/NmaLogHelper.h"

#include <cstdint>

namespace trs {

namespace {

constexpr std::size_t longestShown = 120; // bytes

// The number of bytes of the character that the text begins with, or 0 when it begins with no well-formed UTF-8
// (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
std::size_t characterLength(std::string_view text, std::uint32_t& character)
{
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char const first = byte(0);
    if (first < 0x80) {
        character = first;
        return 1;
    }
    std::size_t const length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length) {
        return 0;
    }
    character = first & (0xffU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0U) != 0x80) {
            return 0;
        }
        character = character << 6U | (byte(i) & 0x3fU);
    }
    bool const isOverlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    bool const isNone = (character >= 0xd800 && character <= 0xdfff) || character > 0x10ffff;
    return isOverlong || isNone ? 0 : length;
}

// As much of the text as `most` bytes of its own hold, whole characters only.
std::string shown(std::string_view text, std::size_t most)
{
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        std::uint32_t character = 0;
        std::size_t const length = characterLength(text.substr(at), character);
        std::size_t const taken = length == 0 ? 1 : length;
        if (at + taken > most) {
            return result + "...";
        }
        bool const isControl = character < 0x20 || (character >= 0x7f && character < 0xa0);
        if (length == 0 || isControl || character == '\\') {
            for (char const each : text.substr(at, taken)) {
                result += LogMakeString("\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(each)));
            }
        } else {
            result += text.substr(at, length);
        }
        at += taken;
    }
    return result;
}

} // namespace

std::string escaped(std::string_view text) { return shown(text, text.size()); }

std::string printable(std::string_view text) { return shown(text, longestShown); }

} // namespace trs
