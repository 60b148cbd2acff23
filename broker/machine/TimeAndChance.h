// What the broker decides by besides what happens to it: the time, and chance.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace trs {

// Handed to whatever waits, backs off or tells times, so that a test has both in its hand. As it is made, the
// machine's.
struct TimeAndChance {
    using Time = std::chrono::steady_clock::time_point;
    using Date = std::chrono::system_clock::time_point;

    std::function<Time()> now = &std::chrono::steady_clock::now;
    std::function<Date()> date = &std::chrono::system_clock::now;
    // A number from 0 to `most`, each as likely as any other.
    std::function<std::uint64_t(std::uint64_t most)> random = &randomNumber;

    static std::uint64_t randomNumber(std::uint64_t most);
};

} // namespace trs
