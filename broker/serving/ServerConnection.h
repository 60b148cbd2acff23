// The server's side of one connection.
#pragma once

#include "broker/ServerTap.h"
#include "broker/framing/Message.h"
#include "broker/machine/RepeatedLines.h"
#include "broker/objects/StubTable.h"
#include "broker/serving/Outlet.h"
#include "broker/transport/Connection.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace trs {

// Answers what arrives, one message after the other, on the handler thread that runs serve().
class ServerConnection {
public:
    // What the connection is doing, as far as giving way to another one goes.
    struct Rest {
        bool isSubscribed = false;
        std::int64_t since = 0; // nanoseconds of a clock; or one of the two below
    };
    static constexpr std::int64_t busy = -1; // a request is being answered
    static constexpr std::int64_t dismissed = -2;

    // `tap` may be null; lines about the connection go to `log`. All outlive it.
    ServerConnection(std::unique_ptr<Channel> channel, std::string const& endpoint, ServerTap* tap, RepeatedLines& log,
                     TimeAndChance const& timing);
    ~ServerConnection();

    // Returns when the connection has ended.
    void serve();

    // From any thread: takes no other request, but answers the one at hand.
    void endReceiving();
    // Ends the connection.
    void shutDown() { connection_.shutDown(); }
    Rest rest() const { return {subscribed_.load(std::memory_order_relaxed) != 0, restsSince_.load()}; }
    // Ends the connection that has rested since then. False when it does no longer.
    bool dismiss(std::int64_t since);

private:
    bool greet();
    bool answer(TipprmiStream& message, TipprmiStream& reply);
    bool answerRequest(MessageHeader const& header, TipprmiStream& request, TipprmiStream& reply);
    bool answerTapped(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& request,
                      TipprmiStream& reply);
    ReplyStatus execute(bool flag, ObjectAddress const& address, TipprmiStream& request, TipprmiStream& reply);
    bool answerLocate(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& reply);
    bool answerSubscribe(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& reply);
    bool answerNext(TipprmiStream& message, TipprmiStream& reply);
    bool send(TipprmiStream const& message);
    std::int64_t restClock() const;
    void logClosed(std::string const& why, int severity = 4);

    std::string const begin_; // of log lines
    ServerTap* const tap_;
    RepeatedLines& log_;
    TimeAndChance const& timing_;
    Connection connection_;
    TreflectStubRef lastStub_; // of the object that was called last: most connections call one object for a while
    std::shared_ptr<Outlet> const outlet_;
    std::atomic<std::size_t> subscribed_ = 0; // what the subscriptions take, in bytes
    std::atomic<std::int64_t> restsSince_;
    std::atomic<bool> isEnding_ = false;
};

} // namespace trs
