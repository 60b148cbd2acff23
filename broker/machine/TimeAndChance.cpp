#include "broker/machine/TimeAndChance.h"

#include <random>

namespace trs {

std::uint64_t TimeAndChance::randomNumber(std::uint64_t most)
{
    thread_local std::minstd_rand numbers{std::random_device{}()}; // a small one: every thread has it
    return std::uniform_int_distribution<std::uint64_t>(0, most)(numbers);
}

} // namespace trs
