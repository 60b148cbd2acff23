#include "adapter/ZYN_StringUtils.h"

#include "adapter/ZYN_MessageNames.h" // this unit carries the names of messages as well

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include <alloca.h>

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The two characters of every 12-bit value.
constexpr auto characterPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs[i] = {alphabet[i >> 6U], alphabet[i & 0x3fU]};
    }
    return pairs;
}();

// For each place in a group of 4, the 6-bit value of every character, shifted to where it belongs among 24 bits.
constexpr std::uint32_t notBase64 = 1U << 31U;
constexpr auto groupValues = [] {
    std::array<std::array<std::uint32_t, 256>, 4> values{};
    for (std::size_t place = 0; place < values.size(); ++place) {
        values[place].fill(notBase64);
        for (std::uint32_t i = 0; i < alphabet.size(); ++i) {
            values[place][static_cast<unsigned char>(alphabet[i])] = i << (18U - 6U * place);
        }
    }
    return values;
}();

// Writes the 4 characters of 3 bytes.
void encodeGroup(unsigned char const* bytes, char* to)
{
    std::uint32_t const bits = std::uint32_t{bytes[0]} << 16U | std::uint32_t{bytes[1]} << 8U | bytes[2];
    std::memcpy(to, characterPairs[bits >> 12U].data(), 2);
    std::memcpy(to + 2, characterPairs[bits & 0xfffU].data(), 2);
}

// The 24 bits of 4 characters, with the bit notBase64 when one of them is none.
std::uint32_t decodeGroup(unsigned char const* from)
{
    return groupValues[0][from[0]] | groupValues[1][from[1]] | groupValues[2][from[2]] | groupValues[3][from[3]];
}

// Writes the first `count` of the 3 bytes of 24 bits.
char* putBytes(std::uint32_t bits, std::size_t count, char* to)
{
    for (std::size_t i = 0; i < count; ++i) {
        *to++ = static_cast<char>(bits >> (16U - 8U * i));
    }
    return to;
}

constexpr bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// std::string::find, but in linear time: that one is quadratic for a pattern such as aaaab in a text of a's.
std::size_t position(std::string_view text, std::string_view pattern, std::size_t from)
{
    if (pattern.empty()) {
        return std::string::npos;
    }
    void const* const found = memmem(text.data() + from, text.size() - from, pattern.data(), pattern.size());
    return found != nullptr ? static_cast<std::size_t>(static_cast<char const*>(found) - text.data())
                            : std::string::npos;
}

} // namespace

std::string const ZYN_StringUtils::base64_chars{alphabet};

template std::string ZYN_StringUtils::toString<int>(int, std::ios_base& (*)(std::ios_base&));

bool ZYN_StringUtils::is_base64(unsigned char c) { return groupValues[0][c] != notBase64; }

std::string ZYN_StringUtils::base64Encode(unsigned char const* bytes, unsigned int length)
{
    std::size_t const partial = length % 3;
    std::string encoded(std::size_t{length / 3} * 4 + (partial != 0 ? 4 : 0), '=');
    char* to = encoded.data();
    for (unsigned int i = 0; i < length / 3; ++i, bytes += 3, to += 4) {
        encodeGroup(bytes, to);
    }
    if (partial != 0) {
        std::array<unsigned char, 3> padded{};
        std::copy_n(bytes, partial, padded.begin());
        std::array<char, 4> group{};
        encodeGroup(padded.data(), group.data());
        std::copy_n(group.begin(), partial + 1, to);
    }
    return encoded;
}

std::string ZYN_StringUtils::base64Decode(std::string const& encoded)
{
    std::string decoded(encoded.size() / 4 * 3 + 2, '\0'); // at most 2 bytes come of what is not a full group
    auto const* from = reinterpret_cast<unsigned char const*>(encoded.data());
    auto const* const end = from + encoded.size();
    char* to = decoded.data();
    for (std::uint32_t bits = 0; end - from >= 4 && (bits = decodeGroup(from)) < notBase64; from += 4) {
        to = putBytes(bits, 3, to);
    }
    // Fewer than 4 characters of the alphabet follow.
    std::uint32_t bits = 0;
    std::size_t count = 0;
    for (; from != end && is_base64(*from); ++from, ++count) {
        bits |= groupValues[count][*from];
    }
    if (count != 0) {
        to = putBytes(bits, count - 1, to);
    }
    decoded.resize(static_cast<std::size_t>(to - decoded.data()));
    return decoded;
}

std::size_t ZYN_StringUtils::split(std::string const& text, std::vector<std::string>& parts,
                                   std::string const& delimiter)
{
    std::vector<std::string> pieces; // not `parts` at once: text or delimiter may be one of its elements
    std::size_t begin = 0;
    for (std::size_t at = 0; (at = position(text, delimiter, begin)) != std::string::npos;
         begin = at + delimiter.size()) {
        pieces.emplace_back(text, begin, at - begin);
    }
    pieces.emplace_back(text, begin);
    parts.insert(parts.end(), std::move_iterator(pieces.begin()), std::move_iterator(pieces.end()));
    return parts.size();
}

std::size_t ZYN_StringUtils::zip(std::string& text)
{
    std::size_t const before = text.size();
    auto end = text.begin();
    bool inRun = false;
    for (char const c : text) {
        bool const space = isSpace(c);
        if (!space || !inRun) {
            *end++ = space ? ' ' : c;
        }
        inRun = space;
    }
    text.erase(end, text.end());
    return before - text.size();
}

void ZYN_StringUtils::bstrip(std::string& text)
{
    text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isSpace));
}

void ZYN_StringUtils::estrip(std::string& text)
{
    text.erase(std::find_if_not(text.rbegin(), text.rend(), isSpace).base(), text.end());
}

void ZYN_StringUtils::strip(std::string& text)
{
    bstrip(text);
    estrip(text);
}

void ZYN_StringUtils::toLower(std::string& text)
{
    for (char& c : text) {
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    }
}

void ZYN_StringUtils::toUpper(std::string& text)
{
    for (char& c : text) {
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
    }
}

void ZYN_StringUtils::replaceAll(std::string& text, std::string const& from, std::string const& to)
{
    std::size_t at = position(text, from, 0);
    if (at == std::string::npos) {
        return;
    }
    // Either the replacing would not end, or no replacement can create an occurrence.
    bool const isOncePerOccurrence = position(to, from, 0) != std::string::npos || from.size() == 1;
    std::uint64_t left = std::uint64_t{text.size() / from.size()} * to.size() + maxReinserted;

    // `done` has no occurrence of `from`; that and `rest`, from `begin` on, are the text as it is by now.
    std::string done;
    done.reserve(text.size());
    std::string rest = text;
    std::size_t begin = 0;
    for (; at != std::string::npos; at = position(rest, from, begin)) {
        done.append(rest, begin, at - begin);
        begin = at + from.size();
        if (isOncePerOccurrence) {
            done += to;
            continue;
        }
        if (to.size() > left) {
            return;
        }
        left -= to.size();
        // The next occurrence may begin in what is done. The search goes on with its end and `to` before the rest.
        std::size_t const again = std::min(done.size(), from.size() - 1);
        std::size_t const length = again + to.size();
        if (begin < length) {
            std::size_t const room = rest.size() + length;
            rest.insert(0, room, '\0');
            begin += room;
        }
        begin -= length;
        done.copy(&rest[begin], again, done.size() - again);
        to.copy(&rest[begin + again], to.size());
        done.erase(done.size() - again);
    }
    done.append(rest, begin);
    text = std::move(done);
}

void ZYN_StringUtils::removeAll(std::string& text, std::string const& pattern)
{
    std::string kept;
    std::size_t begin = 0;
    for (std::size_t at = 0; (at = position(text, pattern, begin)) != std::string::npos; begin = at + pattern.size()) {
        kept.append(text, begin, at - begin);
    }
    if (begin == 0) {
        return;
    }
    kept.append(text, begin);
    if (!kept.empty()) {
        text = std::move(kept);
    }
}

void ZYN_StringUtils::removeAllFast(std::string& text, std::string const& pattern)
{
    std::size_t const length = std::strlen(text.c_str());
    std::size_t const patternLength = std::strlen(pattern.c_str());
    if (length > maxOnStack) {
        std::string remaining(text, 0, length);
        removeAll(remaining, std::string(pattern, 0, patternLength));
        if (remaining.size() != length) {
            text = std::move(remaining);
        }
        return;
    }
    if (patternLength == 0) {
        return;
    }
    char* const kept = static_cast<char*>(alloca(length + 1));
    char* end = kept;
    char const* begin = text.c_str();
    for (char const* at = nullptr; (at = std::strstr(begin, pattern.c_str())) != nullptr; begin = at + patternLength) {
        end = std::copy(begin, at, end);
    }
    if (begin == text.c_str()) {
        return;
    }
    end = std::copy(begin, text.c_str() + length, end);
    if (end != kept) {
        text.assign(kept, end);
    }
}

void ZYN_StringUtils::toHex(std::string const& bytes, std::string& hex)
{
    constexpr std::string_view digits = "0123456789abcdef";
    hex.clear();
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (!hex.empty()) {
            hex += ' ';
        }
        hex += digits[byte >> 4U];
        hex += digits[byte & 0x0fU];
    }
}
