// What is said over one connection of a server.
#pragma once

#include "broker/ServerTap.h"
#include "broker/framing/Message.h"
#include "broker/machine/RepeatedLines.h"
#include "broker/objects/StubTable.h"
#include "broker/serving/Outlet.h"
#include "broker/serving/Tally.h"
#include "broker/serving/TappedExchange.h"
#include "broker/transport/Connection.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace trs {

// Greets, and answers one message after the other. Never waits for the client. One thread at a time has it.
class Session {
public:
    // `tap` may be null; lines about the connection go to `log`. All outlive it.
    Session(Connection& connection, Outlet::Owner& owner, TappedExchange::Host& host, std::string const& endpoint,
            ServerTap* tap, RepeatedLines& log);

    // The connection has ended, or will: what is sent to its client from now on is thrown away.
    void end();

    enum class Greeted { yes, notYet, no };
    // Goes on with the greeting by what has come of it.
    Greeted greet();

    // How messages are answered: by the objects; or, where no thread can be had for that, by saying so.
    enum class Way { served, refused };
    // What answering one takes.
    struct Turn {
        Way way;
        TipprmiStream& reply; // whatever it holds
        bool isMoreToCome;    // answers leave together until the last
        Tally& tally;
    };
    // False when the connection is of no use any more.
    bool answer(TipprmiStream& message, Turn const& turn);

    Outlet& outlet() const { return *outlet_; }
    // From any thread.
    bool isSubscribed() const { return subscribed_.load(std::memory_order_relaxed) != 0; }
    void logClosed(char const* why, int severity = 4);

private:
    bool answerRequest(MessageHeader const& header, TipprmiStream& request, Turn const& turn);
    bool answerTapped(MessageHeader const& header, TipprmiStream const& request);
    bool answerLocate(MessageHeader const& header, ObjectAddress const& address, Turn const& turn);
    bool answerSubscribe(MessageHeader const& header, ObjectAddress const& address, Turn const& turn);
    bool send(Turn const& turn, bool isMoreToCome);

    Connection& connection_;
    TappedExchange::Host& host_;
    std::string const& endpoint_;
    ServerTap* const tap_;
    RepeatedLines& log_;
    std::shared_ptr<Outlet> const outlet_;
    TreflectStubRef lastStub_; // of the object that was called last: most connections call one object for a while
    Greeting greeting_{};
    std::span<unsigned char> greetingLeft_{greeting_};
    std::atomic<std::size_t> subscribed_ = 0; // what the subscriptions take, in bytes
};

} // namespace trs
