#include "broker/framing/Assembler.h"

#include "broker/framing/Message.h"

#include <algorithm>
#include <cstring>

namespace trs {

namespace {

constexpr std::size_t greatestStep = 65536;
constexpr std::size_t leastRoom = 128;

} // namespace

// How many bytes the message lacks that are known to belong to it; 0 when it is whole, or begins none.
std::size_t Assembler::missing(TipprmiStream const& message) const
{
    std::size_t const length = message.size() < messageLengthSize ? messageLengthSize : messageLength(message.data());
    return length > message.size() ? length - message.size() : 0;
}

Assembler::State Assembler::judge(TipprmiStream& message)
{
    if (message.size() < messageLengthSize) {
        return State::incomplete;
    }
    std::size_t const length = messageLength(message.data());
    if (length == 0) {
        return State::malformed;
    }
    if (message.size() < length) {
        return State::incomplete;
    }
    if (message.size() > length) {
        std::size_t const excess = message.size() - length;
        std::memcpy(ahead_.extend(excess), message.data() + length, excess);
        message.truncate(length);
    }
    lastLength_ = length;
    return State::message;
}

Assembler::State Assembler::begin(TipprmiStream& message)
{
    message.clear();
    if (ahead_.size() == 0) {
        return State::incomplete;
    }
    std::memcpy(message.extend(ahead_.size()), ahead_.data(), ahead_.size());
    ahead_.clear();
    return judge(message);
}

std::span<unsigned char> Assembler::room(TipprmiStream& message)
{
    had_ = message.size();
    // At its beginning, room for another message like the last one, so that one transfer gets the whole.
    std::size_t const size =
        had_ == 0 ? std::clamp(lastLength_, leastRoom, greatestStep) : std::min(missing(message), greatestStep);
    return {message.extend(size), size};
}

Assembler::State Assembler::advance(TipprmiStream& message, std::size_t count)
{
    message.truncate(had_ + count);
    return judge(message);
}

Assembler::State Assembler::feed(TipprmiStream& message, std::span<unsigned char const>& bytes)
{
    State state = judge(message);
    while (state == State::incomplete && !bytes.empty()) {
        std::size_t const count = std::min({missing(message), greatestStep, bytes.size()});
        std::memcpy(message.extend(count), bytes.data(), count);
        bytes = bytes.subspan(count);
        state = judge(message);
    }
    return state;
}

} // namespace trs
