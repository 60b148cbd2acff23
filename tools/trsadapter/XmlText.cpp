#include "tools/trsadapter/XmlText.h"

#include "platform/NmaLogHelper.h"

#include <algorithm>

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

} // namespace

std::string xmlText(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    while (!bytes.empty()) {
        std::size_t const length = characterLength(bytes);
        switch (bytes.front()) {
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        case '&':
            text += "&amp;";
            break;
        case '"':
            text += "&quot;";
            break;
        case '\t':
            text += "&#9;";
            break;
        case '\n':
            text += "&#10;";
            break;
        case '\r':
            text += "&#13;";
            break;
        default:
            if (length == 0) {
                text += LogMakeString("\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(bytes.front())));
            } else {
                text += bytes.substr(0, length);
            }
        }
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
}

} // namespace trs::adapter
