// One connected socket between two brokers.
#pragma once

#include "broker/Deadline.h"
#include "broker/machine/BusyWait.h"
#include "platform/TipprmiStream.h"

#include <cstddef>
#include <cstdint>
#include <sys/types.h>

namespace trs {

// Transfers messages in blocking mode: in the usual case one system call for each. One thread sends and one thread
// receives at a time; shutDown() may come from any.
class Connection {
public:
    enum class Sent {
        all,
        nothing, // the connection was lost before a byte was taken
        part,    // lost, or the deadline passed, in the middle
    };
    enum class Received {
        message,
        timedOut,
        closed, // by the peer, between two messages
        lost,
        malformed, // what arrives is no message
    };

    // Owns the descriptor.
    explicit Connection(int descriptor);
    Connection(Connection const&) = delete;
    Connection& operator=(Connection const&) = delete;
    ~Connection();

    Sent send(unsigned char const* bytes, std::size_t length, Deadline& deadline);
    // Sends without ever waiting. How much was taken.
    std::size_t sendSome(TipprmiStream const& message);
    // False when not everything was taken at once; the connection is of no use then.
    bool sendNow(TipprmiStream const& message) { return sendSome(message) == message.size(); }
    // Replaces the content of `message` by the next message.
    Received receive(TipprmiStream& message, Deadline& deadline) { return receive(message, &deadline); }
    // The same without a limit for the message's beginning; its rest then must arrive within the usual time.
    Received receiveNext(TipprmiStream& message) { return receive(message, nullptr); }
    // Receives exactly that many bytes.
    Received receiveBytes(unsigned char* bytes, std::size_t length, Deadline& deadline);

    // Ends the transfer in both directions; who waits in this connection returns.
    void shutDown();
    // Whether the peer has closed an idle connection, or sent what nobody asked for.
    bool isStale() const;

    // Numbers the messages that ask for an answer.
    std::uint32_t nextNumber() { return ++lastNumber_; }
    std::uint32_t lastNumber() const { return lastNumber_; }
    std::int64_t lastUse() const { return lastUse_; }
    void setLastUse(std::int64_t time) { lastUse_ = time; }

private:
    Received receive(TipprmiStream& message, Deadline* deadline);
    Received receiveFirst(unsigned char* place, std::size_t room, Deadline* deadline, std::size_t& count);
    Received receiveMore(unsigned char* place, std::size_t room, Deadline const& deadline, std::size_t& count);
    bool waitFor(short events, Deadline const& deadline) const;
    void setReceiveTimeout(int milliseconds);

    int const descriptor_;
    int receiveTimeout_ = 0; // what the socket has; 0: none
    std::uint32_t lastNumber_ = 0;
    std::int64_t lastUse_ = 0;
    std::size_t lastLength_ = 0;
    BusyWait busyWait_;
    TipprmiStream ahead_{0}; // received beyond the last message
};

} // namespace trs
