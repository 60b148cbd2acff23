// Network byte order, for scalars one by one and for arrays of 16-bit scalars in bulk.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace wire {

inline std::uint16_t swapped(std::uint16_t value) { return __builtin_bswap16(value); }
inline std::uint32_t swapped(std::uint32_t value) { return __builtin_bswap32(value); }

// Host order to network order or back.
template <class Unsigned>
Unsigned networkOrder(Unsigned value)
{
    if constexpr (std::endian::native == std::endian::big || sizeof(Unsigned) == 1) {
        return value;
    } else {
        return swapped(value);
    }
}

template <class Unsigned>
void store(unsigned char* place, Unsigned value)
{
    Unsigned const ordered = networkOrder(value);
    std::memcpy(place, &ordered, sizeof ordered);
}

template <class Unsigned>
Unsigned load(unsigned char const* place)
{
    Unsigned ordered;
    std::memcpy(&ordered, place, sizeof ordered);
    return networkOrder(ordered);
}

// Sixteen bytes of 16-bit scalars, or eight. Spelled with vector types because the compilers do not vectorise the
// plain loop at -O2.
using Chunk16 = std::uint16_t __attribute__((vector_size(16)));
using HalfChunk16 = std::uint16_t __attribute__((vector_size(8)));

// Host order to network order or back.
template <class Chunk>
void order16(Chunk& chunk)
{
    if constexpr (std::endian::native != std::endian::big) {
        chunk = static_cast<Chunk>((chunk << 8) | (chunk >> 8));
    }
}

// Copies `Count` 16-bit scalars from host order to network order or back.
template <std::size_t Count>
void copyOrdered16(void* to, void const* from)
{
    if constexpr (std::endian::native == std::endian::big) {
        std::memcpy(to, from, Count * 2);
    } else {
        auto const swapChunk = [&]<class Chunk>(std::type_identity<Chunk>, std::size_t offset) {
            Chunk chunk;
            std::memcpy(&chunk, static_cast<unsigned char const*>(from) + offset, sizeof chunk);
            order16(chunk);
            std::memcpy(static_cast<unsigned char*>(to) + offset, &chunk, sizeof chunk);
        };
        constexpr std::size_t eights = Count / 8;
        for (std::size_t i = 0; i < eights; ++i) {
            swapChunk(std::type_identity<Chunk16>{}, i * 16);
        }
        constexpr std::size_t rest = Count % 8;
        if constexpr (rest >= 4) {
            swapChunk(std::type_identity<HalfChunk16>{}, eights * 16);
        }
        for (std::size_t i = Count - rest % 4; i < Count; ++i) {
            std::uint16_t one;
            std::memcpy(&one, static_cast<unsigned char const*>(from) + i * 2, 2);
            one = swapped(one);
            std::memcpy(static_cast<unsigned char*>(to) + i * 2, &one, 2);
        }
    }
}

// The same for four scalars of one place and four of another that stand together on the wire, in one chunk.
using Halves16 = std::uint64_t __attribute__((vector_size(16)));
inline void joinOrdered16(unsigned char* to, void const* first, void const* second)
{
    std::uint64_t halves[2];
    std::memcpy(&halves[0], first, 8);
    std::memcpy(&halves[1], second, 8);
    Halves16 const both{halves[0], halves[1]};
    Chunk16 chunk;
    std::memcpy(&chunk, &both, sizeof chunk);
    order16(chunk);
    std::memcpy(to, &chunk, sizeof chunk);
}
inline void splitOrdered16(void* first, void* second, unsigned char const* from)
{
    Chunk16 chunk;
    std::memcpy(&chunk, from, sizeof chunk);
    order16(chunk);
    Halves16 both;
    std::memcpy(&both, &chunk, sizeof both);
    std::uint64_t const halves[2] = {both[0], both[1]};
    std::memcpy(first, &halves[0], 8);
    std::memcpy(second, &halves[1], 8);
}

} // namespace wire
