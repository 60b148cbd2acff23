// The notifications that one peer sends.
#pragma once

#include "broker/calls/Inbox.h"
#include "broker/calls/Link.h"
#include "broker/calls/Subscriptions.h"
#include "broker/framing/OperationKey.h"
#include "broker/objects/Workers.h"
#include "broker/transport/Poller.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace trs {

class Deadline;
class Peer;

// A connection of its own, made with the first subscription. The engine reads it, and when it is lost while there are
// subscriptions makes it again, renews them, and has the gap told. Observers are told by one handler thread at a time,
// in the order in which the peer sent; while more waits for them than the inbox takes, the connection is not read.
class EventLink final : public Poller::Watcher, public Workers::Task, public std::enable_shared_from_this<EventLink> {
public:
    explicit EventLink(Peer& peer, TimeAndChance timing = {});

    enum class Answer { subscribed, noSuchObject, unreachable };
    // Asks the peer to tell of every execution of an operation, and waits for its answer; `why` tells why it is
    // unreachable. Whoever was subscribed unsubscribes once. Gives the run permission back meanwhile.
    Answer subscribe(OperationKey const& key, Deadline const& deadline, std::string& why);
    void unsubscribe(OperationKey const& key);
    // Ends all subscriptions and the connection, and waits for the observer that is being told; a later subscription
    // begins anew.
    void stop();

    void ready(Poller::Events events) override;
    void run() override;
    void refuse() override;

private:
    using Time = Poller::Clock::time_point;

    void begin();
    void receive();
    bool take(TipprmiStream& message);
    void lose(std::string why);
    void send(Subscriptions::Message const& message);
    void flush();
    void leave(OperationKey const& key);
    void put(Subscriptions::Gaps const& gaps);
    void deliver(Inbox::Entry& entry);
    void tell(NotificationGap gap);
    void noteDelivered();
    void employ();
    void setTimer();

    Peer& peer_;
    TimeAndChance const timing_;
    std::mutex mutex_; // of all that follows
    std::condition_variable changed_;
    Subscriptions subscriptions_;
    bool isInGap_ = false;
    Link link_;
    Poller::Number number_ = 0; // of the poller; 0 before the first subscription
    std::vector<unsigned char> unsent_;
    std::string why_; // there is no connection
    Inbox inbox_;
    bool isDelivering_ = false; // somebody is on the way to do it, or does
    std::optional<Time> employAt_;
    std::optional<Time> timer_;
    TimeAndChance::Date delivered_; // whatever had come until then was
    TimeAndChance::Time looked_;    // for that
};

} // namespace trs
