#include "broker/framing/Assembler.h"

#include "broker/framing/Message.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace trs {

namespace {

constexpr std::size_t greatestStep = 65536;
constexpr std::size_t leastStorage = 512; // that is worth giving back

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
    if (message.size() > length) { // nothing is ahead then
        std::size_t const excess = message.size() - length;
        ahead_.clear();
        std::memcpy(ahead_.extend(excess), message.data() + length, excess);
        message.truncate(length);
    }
    lastLength_ = length;
    return State::message;
}

Assembler::State Assembler::begin(TipprmiStream& message)
{
    message.clear();
    std::size_t const there = ahead_.available();
    if (there == 0) [[likely]] {
        return State::incomplete;
    }
    unsigned char const* const next = ahead_.data() + ahead_.size() - there;
    std::size_t const length = there < messageLengthSize ? there : std::min(there, messageLength(next));
    std::size_t const count = length != 0 ? length : there; // what is no message goes on for ever
    std::memcpy(message.extend(count), ahead_.take(count), count);
    if (ahead_.available() == 0) {
        ahead_.clear();
    }
    return judge(message);
}

bool Assembler::isMessageAhead() const
{
    std::size_t const there = ahead_.available();
    return there >= messageLengthSize && messageLength(ahead_.data() + ahead_.size() - there) <= there;
}

void Assembler::releaseStorage()
{
    if (ahead_.available() == 0 && ahead_.capacity() >= leastStorage) {
        std::destroy_at(&ahead_);
        std::construct_at(&ahead_, 0);
    }
    step_ = 0;
}

std::span<unsigned char> Assembler::room(TipprmiStream& message)
{
    had_ = message.size();
    // At its beginning, room for another message like the last one, so that one transfer gets the whole. What has been
    // begun ends before anything else: only who sends many at a time is given room for more.
    std::size_t const expected =
        had_ == 0 ? std::clamp(lastLength_, leastRoom_, greatestStep) : std::min(missing(message), greatestStep);
    room_ = std::max(expected, step_);
    return {message.extend(room_), room_};
}

Assembler::State Assembler::advance(TipprmiStream& message, std::size_t count)
{
    message.truncate(had_ + count);
    State const state = judge(message);
    if (count == room_ && isAhead()) {
        step_ = std::min(2 * room_, greatestStep);
    } else if (count < step_ / 4) {
        step_ /= 2;
    }
    return state;
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
