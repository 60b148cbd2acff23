// A connection that the engine makes and reads.
#pragma once

#include "broker/framing/Assembler.h"
#include "broker/transport/Dialer.h"
#include "broker/transport/Poller.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace trs {

// Without ever waiting: whoever owns it hands on what the poller tells. Begun, advanced and received from on the
// engine's thread; its owner keeps the rest, which may come from any, apart from that.
class Link {
public:
    using Time = Poller::Clock::time_point;
    using Pieces = std::span<Channel::Piece const>;

    explicit Link(Dialer const& dialer) : dialer_(dialer) {}

    bool isNone() const { return channel_ == nullptr && !retryAt_; }
    bool isOpen() const { return isOpen_; }
    // Begins to connect; what comes of it is told by advance().
    void begin(Poller::Number number, std::chrono::milliseconds time);
    // Takes what the poller has told while the link is not open. Whether that has changed anything: it is open then, or
    // there is none, and why() tells why.
    bool advance(Poller::Events events);
    std::string const& why() const { return why_; }
    // When to call advance(), whatever happens.
    std::optional<Time> nextTime() const;

    // Sends what fits; the poller tells when more does. How much was taken.
    std::size_t send(Pieces pieces);
    // All has been sent that there is.
    void rest();
    // Takes what has come, cut into messages, until `take` says that one is none. False when there is no link any more;
    // `isMalformed` tells whether that is due to what came. The poller tells of what is left.
    bool receive(std::function<bool(TipprmiStream& message)> const& take, bool& isMalformed);
    // Whether nothing has come that was not received.
    bool isDrained() const { return !channel_->isStale(); }
    // The poller does not tell of what comes any more, or does again.
    void stopReceiving();
    void receiveAgain();
    // The poller tells of it.
    void shutDown();
    // There is none any more.
    void close();

private:
    void dial();
    bool watch();
    bool greet();
    void fail(std::string why);

    Dialer const& dialer_;
    Poller::Number number_ = 0;
    std::unique_ptr<Channel> channel_;
    bool isOpen_ = false;
    bool isConnected_ = false;
    bool isSendingWatched_ = false;
    bool isReceivingWatched_ = false;
    std::size_t way_ = 0;
    int duration_ = 0; // milliseconds
    Time deadline_;
    std::optional<Time> retryAt_;
    std::vector<unsigned char> greeting_; // as far as it has come
    std::string why_;
    std::optional<Assembler> assembler_; // while there is a channel
    TipprmiStream message_{100};
};

} // namespace trs
