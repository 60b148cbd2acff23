// Cuts the bytes of one direction into messages, without a socket.
#pragma once

#include "platform/TipprmiStream.h"

#include <cstddef>
#include <span>

namespace trs {

// Bytes are received into the message itself, so that none is copied in the usual case of one message at a time.
// Storage grows with what has arrived, never with what a message's length claims.
class Assembler {
public:
    enum class State {
        incomplete,
        message,
        malformed, // what has arrived begins no message; what follows cannot be known any more
    };

    // Replaces the content of `message` by what arrived beyond the last one.
    State begin(TipprmiStream& message);
    // Where the next bytes go, at least one; advance() says how many came, which may be none.
    std::span<unsigned char> room(TipprmiStream& message);
    State advance(TipprmiStream& message, std::size_t count);
    // Takes bytes that have arrived otherwise, up to the end of the message, and removes them from the view.
    State feed(TipprmiStream& message, std::span<unsigned char const>& bytes);

    // Whether something has arrived beyond the last message.
    bool isAhead() const { return ahead_.size() != 0; }

private:
    std::size_t missing(TipprmiStream const& message) const;
    State judge(TipprmiStream& message);

    std::size_t had_ = 0; // of the message, before room()
    std::size_t lastLength_ = 0;
    TipprmiStream ahead_{0};
};

} // namespace trs
