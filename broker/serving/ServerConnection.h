// One connection of a server, and who has it at the moment.
#pragma once

#include "broker/objects/Workers.h"
#include "broker/serving/Session.h"
#include "broker/transport/Poller.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace trs {

class ConnectionTable;

// Waits in the poller while its client asks nothing, and costs no thread then; is taken by a worker when something has
// come, which stays with it for a moment in case more does. The greeting, and what the client is slow to take, are the
// poller's thread's.
class ServerConnection final : public Poller::Watcher,
                               public Workers::Task,
                               public Outlet::Owner,
                               public TappedExchange::Host,
                               public std::enable_shared_from_this<ServerConnection> {
public:
    using Clock = Outlet::Clock;

    // What connections of a server have in common. All outlive them.
    struct House {
        Poller& poller;
        Workers& workers;
        ConnectionTable& table;
        RepeatedLines& log;
        Total& total;
        ServerTap* tap; // may be null
    };
    enum class Idle { waiting, staying };

    ServerConnection(std::unique_ptr<Channel> channel, std::string const& endpoint, House const& house);

    // It is in the table: is served from now on.
    void open();
    // From any thread: takes no other request, but answers the one at hand.
    void endReceiving();
    // Ends as soon as whoever has it sees it.
    void shutDown();
    // Ends it if it is idle. False when a request is at hand.
    bool dismiss();
    bool isSubscribed() const { return session_.isSubscribed(); }

    // Of the poller and the workers.
    void ready(Poller::Events events) override;
    void run() override;
    void refuse() override;
    void pause() override;
    // Of the outlet.
    void awaitSending(Clock::time_point due) override;
    void endSoon() override;
    // Of requests that pass a tap.
    std::shared_ptr<TappedExchange::Host> keep(std::shared_ptr<TappedExchange> exchange) override;
    void release(TappedExchange& exchange) override;
    bool isInAHurry() const override { return isEnding_ || isShut_; }
    Poller& poller() override { return house_.poller; }
    Workers& workers() override { return house_.workers; }
    Total& total() override { return house_.total; }
    Outlet& outlet() override { return session_.outlet(); }

private:
    friend class ConnectionTable;

    // Who has it.
    enum class Phase {
        greeting,  // the poller's thread, as soon as something comes
        resting,   // nobody, until something comes
        queued,    // the next free worker
        served,    // a worker
        held,      // nobody, until the client has taken answers
        finishing, // nobody, until the client has taken all: the connection ends then
        ended,
    };
    enum class Activity { idle, busy, dismissed };
    // What becomes of it after it was served: it waits for the client to ask, for a worker, for the client to take
    // answers, or to take all of them, which is the end.
    enum class Next { rest, queue, hold, finish };

    bool change(Phase from, Phase to);
    Phase phase();
    void watch();
    void want(Poller::Events events);
    void remind(Clock::time_point due);
    void checkTime();
    void greet();
    void submit();
    void resume();
    void serve(Session::Way way);
    Next answerAll(Session::Turn turn);
    bool answerNext(Session::Turn const& turn);
    Connection::Received receiveMore();
    void rest();
    void beginIdling();
    bool hasExchanges() const { return exchangeCount_ != 0; }
    bool isHeldUp();
    bool isOver();
    void hurryExchanges();
    void endFrom(Phase from);

    House const house_;
    Connection connection_;
    Session session_;
    Poller::Number number_ = 0;
    TipprmiStream message_{100}; // what has come of the next one
    std::optional<Clock::time_point> messageDue_;
    std::atomic<Activity> activity_ = Activity::idle;
    std::atomic<bool> isEnding_ = false;
    std::atomic<std::size_t> exchangeCount_ = 0; // that wait
    std::atomic<bool> isShut_ = false;
    // Of whoever serves it.
    bool isStaying_ = false;
    unsigned char untimed_ = 0; // calls in a row
    Tally* tally_ = nullptr;

    std::mutex mutex_;
    Phase phase_ = Phase::greeting;
    Poller::Events wanted_ = Poller::nothing;
    std::optional<Clock::time_point> reminder_;              // the poller's timer
    std::vector<std::shared_ptr<TappedExchange>> exchanges_; // that wait

    // The table's.
    std::list<std::shared_ptr<ServerConnection>>::iterator place_;
    std::list<ServerConnection*>* idleList_ = nullptr;
    std::list<ServerConnection*>::iterator idlePlace_;
    bool isDismissed_ = false;
};

} // namespace trs
