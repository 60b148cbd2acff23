// The notifications that one peer sends.
#pragma once

#include "broker/framing/OperationKey.h"
#include "broker/machine/Thread.h"
#include "broker/transport/Connection.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace trs {

class Peer;

// A connection of its own, made with the first subscription, and a handler thread that reads it. When it is lost while
// there are subscriptions, the thread makes it again and renews them.
class EventLink {
public:
    explicit EventLink(Peer& peer) : peer_(peer) {}

    enum class Answer { subscribed, noSuchObject, unreachable };
    // Asks the peer to tell of every execution of an operation, and waits for its answer. Whoever was subscribed
    // unsubscribes once. Gives the run permission back meanwhile.
    Answer subscribe(OperationKey const& key, Deadline const& deadline);
    void unsubscribe(OperationKey const& key);
    // Ends all subscriptions, the thread and the connection; a later subscription begins anew.
    void stop();

private:
    enum class State { asked, confirmed, noSuchObject, failed };
    struct Subscription {
        unsigned users = 0;
        State state = State::failed;
        std::uint32_t number = 0; // of the message that asked
        bool isRenewal = false;   // which the peer has not answered
    };

    void run();
    void read(Connection& connection);
    bool handle(TipprmiStream& message);
    void confirm(std::uint32_t number, bool isThere);
    void link(std::unique_ptr<Connection> connection);
    void unlink();
    void ask(OperationKey const& key, Subscription& subscription, bool isRenewal);
    void leave(OperationKey const& key);
    void settle();
    bool isAsked() const;

    Peer& peer_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<OperationKey, Subscription, OperationOrder> subscriptions_;
    std::unique_ptr<Connection> connection_; // null while there is none
    bool isLost_ = false;                    // and that was logged
    bool isStopping_ = false;
    bool isRunning_ = false;
    int backoff_ = 0; // milliseconds
    Thread thread_;
};

} // namespace trs
