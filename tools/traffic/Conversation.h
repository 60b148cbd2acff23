// What passes between two brokers, message by message.
#pragma once

#include "broker/framing/Assembler.h"
#include "broker/framing/Message.h"
#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace trs::traffic {

enum class Direction { toUnit, fromUnit };

// Cuts the bytes of one direction of a connection into greeting and messages.
class Cutter {
public:
    void add(std::string_view bytes) { bytes_ += bytes; }
    // The next part as a whole; none until more has come. What is no message comes as it is, whatever its length.
    std::optional<std::string> next();
    // What is left when no more comes.
    std::string rest();

private:
    Assembler assembler_;
    TipprmiStream message_{100}; // as far as it has come
    std::string bytes_;          // behind it
    bool isGreeted_ = false;
    bool isLost_ = false; // the beginning of the next message cannot be known any more
};

// Tells what the messages of one connection say: a reply by the request that it answers.
class Conversation {
public:
    using Time = std::chrono::system_clock::time_point;

    struct Told { // NOLINT(bugprone-exception-escape): in moving the JSON library's values, which cannot throw
        // {"kind": "request", "number", "object", "operation", "arguments"}, {"kind": "reply", ..., "status",
        // "results"} and the like, as docs/traffic.md has it.
        catalogue::Value value;
        // Of a reply: how long its request was under way, and how many bytes it has. None of other messages.
        std::optional<std::chrono::nanoseconds> duration;
        std::size_t requestSize = 0;
    };
    Told tell(std::string_view message, Time time);

private:
    struct Request {
        std::string object;
        std::string operation;
        catalogue::Operation const* described;
        Time time;
        std::size_t size;
    };

    void tellAddressed(MessageHeader const& header, TipprmiStream& stream, Told& told, Time time, std::size_t size);
    void tellAnswer(MessageHeader const& header, TipprmiStream& stream, Told& told, Time time);

    std::map<std::uint32_t, Request> open_; // requests that are not answered, by number
};

// A part of what passes on some connections.
struct Packet {
    Conversation::Time time;
    std::uint32_t connection = 0; // numbered from 1 on
    Direction direction = Direction::toUnit;
    std::string message;
};

} // namespace trs::traffic
