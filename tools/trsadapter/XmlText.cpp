#include "tools/trsadapter/XmlText.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::adapter {

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

// The length of the character that `text` begins with, in bytes; 0 when it is none that XML can carry. RFC 3629 for the
// ranges; of what those allow, XML leaves out U+FFFE and U+FFFF.
std::size_t characterLength(std::string_view text)
{
    auto const first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return first >= 0x20 || first == '\t' || first == '\n' || first == '\r' ? 1 : 0;
    }
    std::size_t const length = first >= 0xc2 && first < 0xe0 ? 2 : first >= 0xe0 && first < 0xf0 ? 3 : 4;
    if (first < 0xc2 || first > 0xf4 || text.size() < length ||
        !std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), isContinuation)) {
        return 0;
    }
    auto const second = static_cast<unsigned char>(text[1]);
    bool const isOverlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
    bool const isSurrogate = first == 0xed && second >= 0xa0;
    bool const isBeyond = first == 0xf4 && second >= 0x90;
    bool const isNoCharacter = text.starts_with("\xef\xbf\xbe") || text.starts_with("\xef\xbf\xbf");
    return isOverlong || isSurrogate || isBeyond || isNoCharacter ? 0 : length;
}

// What stands for the character, or the byte that is none, that `bytes` begins with and that has this length.
std::string escaped(std::string_view bytes, std::size_t length)
{
    switch (bytes.front()) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return length != 0 ? std::string(bytes.substr(0, length))
                           : fmt::format("\\x{:02x}", static_cast<unsigned char>(bytes.front()));
    }
}

} // namespace

std::string xmlText(std::string_view bytes) { return xmlTextOfHead(bytes, std::string::npos); }

std::string xmlTextOfHead(std::string_view& bytes, std::size_t most)
{
    std::string text;
    text.reserve(std::min(bytes.size() + bytes.size() / 8, most));
    while (!bytes.empty()) {
        std::size_t const length = characterLength(bytes);
        std::string const next = escaped(bytes, length);
        if (next.size() > most - text.size()) {
            break;
        }
        text += next;
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
}

} // namespace trs::adapter
