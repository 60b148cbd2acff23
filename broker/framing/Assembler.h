// Cuts the bytes of one direction into messages, without a socket.
#pragma once

#include "platform/TipprmiStream.h"

#include <cstddef>
#include <span>

namespace trs {

// Bytes are received into the message itself, so that none is copied in the usual case of one message at a time; of
// many that come together each is copied twice, however many they are. Storage grows with what has arrived, never with
// what a message's length claims.
class Assembler {
public:
    enum class State {
        incomplete,
        message,
        malformed, // what has arrived begins no message; what follows cannot be known any more
    };

    // `leastRoom` is for what comes first, in bytes: whoever expects several messages together gives more.
    explicit Assembler(std::size_t leastRoom = 128) : leastRoom_(leastRoom) {}

    // Replaces the content of `message` by the next one that arrived beyond the last, or as much of it as did.
    State begin(TipprmiStream& message);
    // Where the next bytes go, at least one; advance() says how many came, which may be none.
    std::span<unsigned char> room(TipprmiStream& message);
    State advance(TipprmiStream& message, std::size_t count);
    // Takes bytes that have arrived otherwise, up to the end of the message, and removes them from the view.
    State feed(TipprmiStream& message, std::span<unsigned char const>& bytes);

    // Whether something has arrived beyond the last message.
    bool isAhead() const { return ahead_.available() != 0; }
    // Whether a whole message has, or what is none.
    bool isMessageAhead() const;
    // Gives back what storage it holds for nothing.
    void releaseStorage();

private:
    std::size_t missing(TipprmiStream const& message) const;
    State judge(TipprmiStream& message);

    std::size_t const leastRoom_;
    std::size_t had_ = 0;  // of the message, before room()
    std::size_t room_ = 0; // that room() gave
    std::size_t step_ = 0; // the room for who sends many at a time
    std::size_t lastLength_ = 0;
    TipprmiStream ahead_{0}; // read up to the message
};

} // namespace trs
