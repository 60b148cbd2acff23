#include "broker/transport/Connection.h"

namespace trs {

namespace {

Connection::Received outcomeOf(Channel::Received received)
{
    switch (received) {
    case Channel::Received::timedOut:
        return Connection::Received::timedOut;
    case Channel::Received::closed:
        return Connection::Received::closed;
    case Channel::Received::some:
    case Channel::Received::lost:
        break;
    }
    return Connection::Received::lost;
}

} // namespace

Connection::Connection(std::unique_ptr<Channel> channel, Cut* cut) : channel_(std::move(channel))
{
    if (cut != nullptr) {
        cut_.emplace(*cut, *channel_);
    }
}

Connection::Received Connection::receive(TipprmiStream& message, Deadline* deadline)
{
    std::optional<Deadline> rest; // a message that comes by itself has its own time, from its beginning on
    Assembler::State state = assembler_.begin(message);
    while (state == Assembler::State::incomplete) {
        bool const isFirst = message.size() == 0;
        if (!isFirst && !rest) {
            rest = deadline != nullptr ? *deadline : Deadline();
        }
        auto const room = assembler_.room(message);
        std::size_t count = 0;
        Channel::Received const received = isFirst ? channel_->receive(room.data(), room.size(), deadline, count)
                                                   : channel_->receiveRest(room.data(), room.size(), *rest, count);
        if (received != Channel::Received::some) {
            message.clear();
            bool const isCut = !isFirst && received == Channel::Received::closed;
            return isCut ? Received::lost : outcomeOf(received);
        }
        state = assembler_.advance(message, count);
    }
    return state == Assembler::State::message ? Received::message : Received::malformed;
}

Connection::Received Connection::receiveThere(TipprmiStream& message, Deadline* deadline)
{
    Assembler::State state = isBegun_ ? Assembler::State::incomplete : assembler_.begin(message);
    while (state == Assembler::State::incomplete) {
        isBegun_ = message.size() != 0;
        auto const room = assembler_.room(message);
        std::size_t count = 0;
        Channel::Received const received = isBegun_ || deadline == nullptr
                                               ? channel_->receiveNow(room.data(), room.size(), count)
                                               : channel_->receive(room.data(), room.size(), deadline, count);
        state = assembler_.advance(message, count);
        if (received != Channel::Received::some) {
            bool const isCut = isBegun_ && received == Channel::Received::closed;
            return isCut ? Received::lost : outcomeOf(received);
        }
    }
    isBegun_ = false;
    return state == Assembler::State::message ? Received::message : Received::malformed;
}

Connection::Received Connection::receiveBytesNow(std::span<unsigned char>& bytes)
{
    while (!bytes.empty()) {
        std::size_t count = 0;
        Channel::Received const received = channel_->receiveNow(bytes.data(), bytes.size(), count);
        if (received != Channel::Received::some) {
            return outcomeOf(received);
        }
        bytes = bytes.subspan(count);
    }
    return Received::message;
}

Connection::Received Connection::receiveBytes(unsigned char* bytes, std::size_t length, Deadline& deadline)
{
    deadline.startWaiting();
    for (std::size_t had = 0; had < length;) {
        std::size_t count = 0;
        Channel::Received const received = channel_->receiveRest(bytes + had, length - had, deadline, count);
        if (received != Channel::Received::some) {
            return received == Channel::Received::timedOut ? Received::timedOut : Received::lost;
        }
        had += count;
    }
    return Received::message;
}

} // namespace trs
