// What a process's server has done so far, and is doing.
#pragma once

#include "broker/framing/Message.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace trs {

struct ServerCounters {
    // At the moment.
    std::size_t connections = 0;
    std::size_t threads = 0;
    std::size_t queued = 0;    // connections whose requests wait for a thread
    std::size_t executing = 0; // threads that do
    std::size_t waiting = 0;   // threads that wait for other processes in the middle of operations

    // Since serving began; of the last few milliseconds some may be missing.
    static constexpr std::size_t outcomes = static_cast<std::size_t>(ReplyStatus::busy) + 1;
    std::array<std::uint64_t, outcomes> calls{}; // requests answered, by ReplyStatus
    std::uint64_t bytesIn = 0;                   // of messages, without greetings
    std::uint64_t bytesOut = 0;

    // How long the server has a request until its answer is on its way, of one request in eight of each connection.
    static constexpr std::array<std::chrono::microseconds, 11> bounds{{
        std::chrono::microseconds(5),
        std::chrono::microseconds(10),
        std::chrono::microseconds(20),
        std::chrono::microseconds(50),
        std::chrono::microseconds(100),
        std::chrono::microseconds(300),
        std::chrono::milliseconds(1),
        std::chrono::milliseconds(10),
        std::chrono::milliseconds(100),
        std::chrono::seconds(1),
        std::chrono::seconds(10),
    }};
    std::array<std::uint64_t, bounds.size() + 1> times{}; // how many took no longer than the bound, but than the last
    std::chrono::nanoseconds timed{};                     // their sum

    std::uint64_t call(ReplyStatus outcome) const { return calls[static_cast<std::size_t>(outcome)]; }
};

} // namespace trs
