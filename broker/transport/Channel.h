// The bytes between two brokers, whatever carries them.
#pragma once

#include "broker/Deadline.h"
#include "broker/Principal.h"
#include "broker/transport/Poller.h"

#include <cstddef>
#include <span>
#include <string>

namespace trs {

// A stream of bytes in each direction, which arrive whole and in order, or not at all. One thread sends and one
// receives at a time; what ends it may come from any.
class Channel {
public:
    enum class Sent {
        all,
        nothing, // the channel was lost before a byte was taken
        part,    // lost, or the deadline passed, in the middle
    };
    enum class Received {
        some,
        timedOut,
        closed, // by the other side, in an orderly way
        lost,
    };

    Channel(Channel const&) = delete;
    Channel& operator=(Channel const&) = delete;
    // Shuts it down.
    virtual ~Channel() = default;

    // Sends all, waiting for the other side to take it.
    virtual Sent send(unsigned char const* bytes, std::size_t length, Deadline& deadline) = 0;
    struct Piece {
        unsigned char const* bytes;
        std::size_t length;
    };
    // Sends what fits of one piece after the other, without waiting. How many bytes were taken.
    virtual std::size_t sendSome(std::span<Piece const> pieces) = 0;
    std::size_t sendSome(unsigned char const* bytes, std::size_t length)
    {
        Piece const whole{bytes, length};
        return sendSome(std::span(&whole, 1));
    }
    // Receives what there is, `room` bytes at most, into `place`; waits for the first, for ever without a deadline. For
    // what begins when it pleases the other side: the thread may wait awake for a moment.
    virtual Received receive(unsigned char* place, std::size_t room, Deadline* deadline, std::size_t& count) = 0;
    // The same for the rest of what has begun to arrive.
    virtual Received receiveRest(unsigned char* place, std::size_t room, Deadline const& deadline,
                                 std::size_t& count) = 0;
    // The same without waiting: timedOut when there is nothing.
    virtual Received receiveNow(unsigned char* place, std::size_t room, std::size_t& count) = 0;
    // Has the poller tell `number` of these events of the channel, canReceive and canSend, and no others; of nothing,
    // not even of its end, when it is neither. Of one poller in the channel's life. False when the system does not
    // allow it.
    virtual bool watch(Poller& poller, Poller::Number number, Poller::Events events) = 0;
    // Of a channel that Dialer::begin() made and that can be sent to: empty, or why there is no connection.
    virtual std::string connectFailure() const { return {}; }
    // Who the other side is. Asks the system, so that nobody pays for it who does not ask.
    virtual Principal principal() const { return {}; }
    // Whether the other side has closed it, or sent something that was not received.
    virtual bool isStale() const = 0;
    // Tells the other side that nothing more will be sent; it may still send.
    virtual void endSending() = 0;
    // Takes nothing more: who waits in receive() returns. What is to be sent still is.
    virtual void endReceiving() = 0;
    // Ends it in both directions; who waits in it returns.
    virtual void shutDown() = 0;

protected:
    Channel() = default;
};

} // namespace trs
