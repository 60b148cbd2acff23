// A channel over a connected stream socket: unix: and tcp: endpoints.
#pragma once

#include "broker/machine/BusyWait.h"
#include "broker/transport/Channel.h"

namespace trs {

// In the usual case one system call for each transfer.
class SocketChannel final : public Channel {
public:
    // Owns the descriptor, which is in blocking mode.
    explicit SocketChannel(int descriptor) : descriptor_(descriptor) {}
    ~SocketChannel() override;

    Sent send(unsigned char const* bytes, std::size_t length, Deadline& deadline) override;
    using Channel::sendSome;
    std::size_t sendSome(std::span<Piece const> pieces) override;
    Received receive(unsigned char* place, std::size_t room, Deadline* deadline, std::size_t& count) override;
    Received receiveRest(unsigned char* place, std::size_t room, Deadline const& deadline, std::size_t& count) override;
    Received receiveNow(unsigned char* place, std::size_t room, std::size_t& count) override;
    bool watch(Poller& poller, Poller::Number number, Poller::Events events) override;
    std::string connectFailure() const override;
    Principal principal() const override;
    bool isStale() const override;
    void endSending() override;
    void endReceiving() override;
    void shutDown() override;

private:
    bool waitFor(short events, Deadline const& deadline) const;
    void setReceiveTimeout(int milliseconds);

    int const descriptor_;
    bool isWatched_ = false;
    int receiveTimeout_ = 0; // what the socket has; 0: none
    BusyWait busyWait_;
};

} // namespace trs
