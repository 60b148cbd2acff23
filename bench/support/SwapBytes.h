// The limit of marshalling: nothing but the change of byte order.
#pragma once

#include <cstddef>
#include <cstdint>

// Copies `count` 16-bit values from one flat buffer to another with their bytes swapped.
void swapBytes(std::uint16_t* to, std::uint16_t const* from, std::size_t count);
