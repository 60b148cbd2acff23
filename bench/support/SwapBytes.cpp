#include "bench/support/SwapBytes.h"

void swapBytes(std::uint16_t* __restrict to, std::uint16_t const* __restrict from, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = __builtin_bswap16(from[i]);
    }
}
