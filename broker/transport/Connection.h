// One connection between two brokers.
#pragma once

#include "broker/framing/Assembler.h"
#include "broker/transport/Cut.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace trs {

// Transfers messages over a channel. One thread sends and one thread receives at a time; what ends it may come from
// any.
class Connection {
public:
    using Sent = Channel::Sent;
    enum class Received {
        message,
        timedOut,
        closed, // by the peer, between two messages
        lost,
        malformed, // what arrives is no message
    };

    // Ends with the cut, if there is one.
    explicit Connection(std::unique_ptr<Channel> channel, Cut* cut = nullptr);
    // Expects that many bytes to come together, if need be.
    Connection(std::unique_ptr<Channel> channel, std::size_t leastRoom)
        : channel_(std::move(channel)), assembler_(leastRoom)
    {
    }

    Sent send(unsigned char const* bytes, std::size_t length, Deadline& deadline)
    {
        return channel_->send(bytes, length, deadline);
    }
    // Sends without ever waiting. How much was taken.
    std::size_t sendSome(TipprmiStream const& message) { return channel_->sendSome(message.data(), message.size()); }
    std::size_t sendSome(std::span<Channel::Piece const> pieces) { return channel_->sendSome(pieces); }
    // False when not everything was taken at once; the connection is of no use then.
    bool sendNow(TipprmiStream const& message) { return sendSome(message) == message.size(); }
    // Replaces the content of `message` by the next message.
    Received receive(TipprmiStream& message, Deadline& deadline) { return receive(message, &deadline); }
    // The same without a limit for the message's beginning; its rest then must arrive within the usual time.
    Received receiveNext(TipprmiStream& message) { return receive(message, nullptr); }
    // Goes on with `message`, or replaces it by the next one when it was whole, by what is there: timedOut when that is
    // not the whole of it.
    Received receiveNow(TipprmiStream& message) { return receiveThere(message, nullptr); }
    // The same, but waits for the first byte of a next message.
    Received receiveSoon(TipprmiStream& message, Deadline& deadline) { return receiveThere(message, &deadline); }
    // Whether receiveNow() has a message begun, or will have at once.
    bool isBegun() const { return isBegun_ || assembler_.isAhead(); }
    // Whether it will have a whole one, or what is none, without the channel.
    bool isMessageAhead() const { return assembler_.isMessageAhead(); }
    // Receives exactly that many bytes.
    Received receiveBytes(unsigned char* bytes, std::size_t length, Deadline& deadline);
    // Receives what is there of so many bytes, and takes it off the view.
    Received receiveBytesNow(std::span<unsigned char>& bytes);
    // Has a poller tell of it, as Channel::watch() does.
    bool watch(Poller& poller, Poller::Number number, Poller::Events events)
    {
        return channel_->watch(poller, number, events);
    }
    Principal principal() const { return channel_->principal(); }
    // Gives back what storage it holds for nothing.
    void releaseStorage() { assembler_.releaseStorage(); }

    // Ends the transfer in both directions; who waits in this connection returns.
    void shutDown() { channel_->shutDown(); }
    // Receives nothing more; what is to be sent still is.
    void endReceiving() { channel_->endReceiving(); }
    // Whether the peer has closed an idle connection, or sent what nobody asked for.
    bool isStale() const { return assembler_.isAhead() || channel_->isStale(); }

    // Numbers the messages that ask for an answer.
    std::uint32_t nextNumber() { return ++lastNumber_; }
    std::uint32_t lastNumber() const { return lastNumber_; }
    std::int64_t lastUse() const { return lastUse_; }
    void setLastUse(std::int64_t time) { lastUse_ = time; }

private:
    Received receive(TipprmiStream& message, Deadline* deadline);
    Received receiveThere(TipprmiStream& message, Deadline* deadline);

    std::unique_ptr<Channel> const channel_;
    std::optional<Cut::Member> cut_;
    Assembler assembler_;
    bool isBegun_ = false;
    std::uint32_t lastNumber_ = 0;
    std::int64_t lastUse_ = 0;
};

} // namespace trs
