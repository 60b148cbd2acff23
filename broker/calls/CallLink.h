// Asynchronous calls to one peer.
#pragma once

#include "broker/CallFailure.h"
#include "broker/calls/Engine.h"
#include "broker/calls/Link.h"
#include "broker/calls/Multiplexer.h"
#include "broker/framing/Message.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace trs {

class Peer;

// A message that asks for an answer, for as long as it is under way.
struct Multiplexer::Call {
    TipprmiStream message{100};
    MessageKind answerKind = MessageKind::reply;
    std::chrono::milliseconds time{0};

    // One of these once, on the engine's thread; the call may be destroyed by it. `answer` is placed behind the header.
    virtual void takeAnswer(MessageHeader const& header, TipprmiStream& answer) = 0;
    virtual void fail(CallFailure::Kind kind, CallFailure::CarriedOut carriedOut, std::string reason) = 0;

    std::uint32_t number = 0; // that the message has; the link's own

protected:
    ~Call() = default;
};

// All over one connection, many at a time. It is made when a call needs it, and kept.
class CallLink final : public Poller::Watcher, public Engine::Later, public std::enable_shared_from_this<CallLink> {
public:
    using Call = Multiplexer::Call;
    using Ticket = Multiplexer::Ticket;

    explicit CallLink(Peer& peer);

    // From any thread. Nothing is told before it returns, unless it is called on the engine's thread.
    Ticket post(Call& call);
    void cancel(Ticket ticket);
    // Ends all calls. Later ones are ended too until it is opened.
    void close();
    void open();

    void ready(Poller::Events events) override;
    void flush() override;

private:
    struct Ending {
        Call* call;
        CallFailure::Kind kind;
        CallFailure::CarriedOut carriedOut;
        std::string reason;
    };

    void begin();
    void advance(Poller::Events events);
    void receive();
    bool take(TipprmiStream& message);
    void lose(bool isMalformed);
    void end(Multiplexer::AllEnded const& all, bool isMalformed = false);
    void end(Multiplexer::Ended const& ended, bool isMalformed);
    void send();
    void setTimer();
    void tellEnded();
    void wake();

    Peer& peer_;
    std::mutex mutex_;
    Multiplexer decisions_;
    Link link_;
    Poller::Number number_ = 0; // of the poller; 0 before the first call
    bool isClosed_ = false;
    bool isPutOff_ = false;
    std::optional<Poller::Clock::time_point> timer_;
    std::vector<unsigned char> rest_; // the message that an abandoned call has begun to send
    std::vector<Ending> ended_;       // to be told
};

} // namespace trs
