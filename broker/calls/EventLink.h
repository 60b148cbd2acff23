// The notifications that one peer sends.
#pragma once

#include "broker/calls/Subscriptions.h"
#include "broker/framing/OperationKey.h"
#include "broker/machine/Thread.h"
#include "broker/transport/Connection.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace trs {

class Peer;

// A connection of its own, made with the first subscription, and a handler thread that reads it. When it is lost while
// there are subscriptions, the thread makes it again, renews them, and tells of the gap.
class EventLink {
public:
    explicit EventLink(Peer& peer, TimeAndChance timing = {});

    enum class Answer { subscribed, noSuchObject, unreachable };
    // Asks the peer to tell of every execution of an operation, and waits for its answer; `why` tells why it is
    // unreachable. Whoever was subscribed unsubscribes once. Gives the run permission back meanwhile.
    Answer subscribe(OperationKey const& key, Deadline const& deadline, std::string& why);
    void unsubscribe(OperationKey const& key);
    // Ends all subscriptions, the thread and the connection; a later subscription begins anew.
    void stop();

private:
    void run();
    std::string read(Connection& connection);
    bool handle(TipprmiStream& message);
    void noteDelivered(Connection const& connection);
    void link(std::unique_ptr<Connection> connection);
    void send(Subscriptions::Message const& message);
    void leave(OperationKey const& key);
    void tell(Subscriptions::Gaps const& gaps);

    Peer& peer_;
    TimeAndChance const timing_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Subscriptions subscriptions_;
    std::unique_ptr<Connection> connection_; // null while there is none; only the thread changes it
    std::string why_;                        // there is none
    bool isStopping_ = false;
    bool isRunning_ = false;
    Thread thread_;
    // The thread's own.
    TimeAndChance::Date delivered_; // whatever had come until then was
    TimeAndChance::Time looked_;    // for that
    bool isInGap_ = false;
};

} // namespace trs
