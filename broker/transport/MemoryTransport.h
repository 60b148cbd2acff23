// Connections within one process, without a socket: memory: endpoints.
#pragma once

#include "broker/transport/Dialer.h"
#include "broker/transport/Endpoint.h"
#include "broker/transport/Listener.h"

#include <asio/io_context.hpp>

#include <memory>
#include <string>
#include <utility>

namespace trs {

// One end of a pair. Bytes wait in memory for the other end, 256 KiB of them at most.
class MemoryChannel final : public Channel {
public:
    static std::pair<std::unique_ptr<Channel>, std::unique_ptr<Channel>> makePair();

    ~MemoryChannel() override;
    Sent send(unsigned char const* bytes, std::size_t length, Deadline& deadline) override;
    using Channel::sendSome;
    std::size_t sendSome(std::span<Piece const> pieces) override;
    Received receive(unsigned char* place, std::size_t room, Deadline* deadline, std::size_t& count) override;
    Received receiveRest(unsigned char* place, std::size_t room, Deadline const& deadline, std::size_t& count) override;
    Received receiveNow(unsigned char* place, std::size_t room, std::size_t& count) override;
    bool watch(Poller& poller, Poller::Number number, Poller::Events events) override;
    Principal principal() const override { return {Principal::Kind::process, {}, {}, {}}; }
    bool isStale() const override;
    void endSending() override;
    void endReceiving() override;
    void shutDown() override;

private:
    class Pipe;
    MemoryChannel(std::shared_ptr<Pipe> in, std::shared_ptr<Pipe> out) : in_(std::move(in)), out_(std::move(out)) {}

    std::shared_ptr<Pipe> const in_;
    std::shared_ptr<Pipe> const out_;
};

class MemoryListener final : public Listener {
public:
    MemoryListener(asio::io_context& context, Endpoint endpoint) : context_(context), endpoint_(std::move(endpoint)) {}
    ~MemoryListener() override;

    std::string open() override;
    void start(Admit admit) override;
    Endpoint const& endpoint() const override { return endpoint_; }
    // The other end of a new connection.
    std::unique_ptr<Channel> connect();

private:
    asio::io_context& context_;
    Endpoint const endpoint_;
    std::shared_ptr<Admit> const admit_ = std::make_shared<Admit>();
};

class MemoryDialer final : public Dialer {
public:
    explicit MemoryDialer(Endpoint endpoint) : endpoint_(std::move(endpoint)) {}

    std::size_t ways() const override { return 1; }
    std::unique_ptr<Channel> dial(std::size_t way, Deadline& deadline, Cut const& cut, std::string& why) const override;
    std::unique_ptr<Channel> begin(std::size_t way, bool& isTooEarly, std::string& why) const override;

private:
    Endpoint const endpoint_;
};

} // namespace trs
