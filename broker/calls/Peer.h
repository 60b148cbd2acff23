// A broker that this process knows.
#pragma once

#include "broker/CallFailure.h"
#include "broker/calls/CallLink.h"
#include "broker/calls/EventLink.h"
#include "broker/framing/Message.h"
#include "broker/transport/Connector.h"
#include "platform/TreflectORB.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace trs {

// The client's side of the connections to one endpoint. A call takes an idle connection, or makes one, and gives it
// back afterwards; no thread has a part in it but the calling one. Threads keep to the connection they used last: the
// system then keeps its two ends on one processor, which spares waking up the other.
//
// Never destroyed, because stubs refer to it: a peer that was removed is closed.
class Peer final : public TreflectORB {
public:
    // Every broker but the process's own is a Peer. Const tells proxies to leave it alone, no more.
    static Peer& of(TreflectORB const& orb) { return const_cast<Peer&>(static_cast<Peer const&>(orb)); }

    Peer(std::string endpoint, std::unique_ptr<Dialer> dialer, unsigned long number, TimeAndChance timing = {});

    std::string const& endpoint() const { return endpoint_; }
    unsigned long number() const { return number_; }
    bool isOpen() const { return isOpen_.load(std::memory_order_acquire); }
    void open();
    // Ends its connections and refuses calls. Calls under way fail at once.
    void close();

    struct Failure {
        CallFailure::Kind kind = CallFailure::Kind::none;
        CallFailure::CarriedOut carriedOut = CallFailure::CarriedOut::no;
        std::string reason;
    };
    // Sends a message and receives the one that answers it, its reader behind the header. The run permission is given
    // back meanwhile. False when no answer came.
    bool exchange(TipprmiStream& message, MessageKind answerKind, TipprmiStream& answer, MessageHeader& header,
                  Deadline& deadline, Failure& failure);

    enum class Located { there, notThere, unreachable };
    // `failure` tells why it is unreachable.
    Located locate(TipprmiOID const& oid, Deadline& deadline, Failure& failure);

    // A connection of the caller's own.
    std::unique_ptr<Connection> connect(Deadline& deadline, std::string& why);
    Dialer const& dialer() const { return connector_.dialer(); }
    EventLink& events() { return *events_; }
    // Asynchronous calls.
    CallLink& calls() { return *calls_; }

private:
    struct Idle {
        std::thread::id user;
        std::unique_ptr<Connection> connection;
    };

    bool isOneLeft(Deadline const& deadline) const;
    std::unique_ptr<Connection> takeIdle(Deadline const& deadline);
    void giveBack(std::unique_ptr<Connection> connection);
    void dropIdle();
    bool transfer(std::unique_ptr<Connection>& connection, TipprmiStream& message, Deadline& deadline,
                  Failure& failure);
    static bool isRepeated(MessageHeader const& answer, std::uint32_t number);
    bool receiveAnswer(Connection& connection, MessageKind kind, TipprmiStream& answer, MessageHeader& header,
                       std::uint32_t number, Deadline& deadline, Failure& failure);

    std::string const endpoint_;
    Connector const connector_;
    unsigned long const number_;
    std::atomic<bool> isOpen_ = true;
    Cut cut_; // of all its connections
    std::mutex mutex_;
    std::vector<Idle> idle_; // the one used last is at the end
    std::shared_ptr<CallLink> const calls_;
    std::shared_ptr<EventLink> const events_;
};

} // namespace trs
