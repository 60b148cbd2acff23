#include "broker/machine/TimeAndChance.h"

#include <random>

namespace trs {

std::uint64_t TimeAndChance::randomNumber(std::uint64_t most)
{
    thread_local std::mt19937_64 numbers{std::random_device{}()};
    return std::uniform_int_distribution<std::uint64_t>(0, most)(numbers);
}

} // namespace trs
