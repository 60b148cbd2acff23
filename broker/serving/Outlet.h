// The one way out of a server's connection.
#pragma once

#include "broker/machine/RepeatedLines.h"
#include "broker/objects/Subscriber.h"
#include "broker/transport/Connection.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace trs {

// Whatever is sent after the greeting goes through here: answers by whoever serves the connection, and notifications by
// every thread that notifies. Each goes out whole, and nobody waits for the client to take it: what the channel does
// not take at once waits in a queue, which the poller's thread empties. A client that lets too many notifications wait,
// or takes nothing for the time of a call, is disconnected.
class Outlet final : public Subscriber {
public:
    using Clock = std::chrono::steady_clock;

    // What the outlet asks of its connection, on any thread.
    class Owner {
    public:
        // Has drain() called when the channel takes more, and checkTime() at that time.
        virtual void awaitSending(Clock::time_point due) = 0;
        // The connection is of no use any more.
        virtual void endSoon() = 0;

    protected:
        Owner() = default;
        ~Owner() = default;
    };

    Outlet(Connection& connection, Owner& owner, RepeatedLines& log, std::string const& endpoint)
        : connection_(connection), owner_(owner), log_(log), endpoint_(endpoint)
    {
    }

    // Others may send from now on; until then answers need no lock. By whoever serves the connection.
    void admitOthers() { isShared_ = true; }
    void send(TipprmiStream const& notification) override;
    // By whoever serves the connection. While more answers are about to follow, they leave together. False when the
    // connection is of no use any more.
    bool answer(TipprmiStream const& reply, bool isMoreToCome);
    // What was to leave together leaves.
    bool flush();

    // For one answer, in as many parts as it pleases: nothing comes between them until the turn ends. False when
    // somebody else has it.
    bool beginTurn(void const* who);
    // False when the connection is of no use any more.
    bool sendPart(unsigned char const* bytes, std::size_t length);
    void endTurn();

    // Whether so much waits for the client that it had better not be given more to wait for.
    bool isHeldUp() const { return isHeldUp_.load(std::memory_order_acquire); }
    // Whether something waits for the client.
    bool isWaiting();
    bool isLost();
    // On the poller's thread: the channel takes more.
    void drain();
    // The time that was asked for has come. When it wants to be asked again.
    std::optional<Clock::time_point> checkTime(Clock::time_point now);

    // Nothing more goes out: the answer at hand stays as it is.
    void abandon();
    // The last thing that is done with the connection.
    void close();

    // How the log's lines about a connection's end begin.
    static std::string closing(std::string const& endpoint) { return "a connection to " + endpoint + " is closed: "; }

private:
    struct Entry {
        std::size_t left; // bytes
        bool isAnswer;
    };
    struct Queue {
        std::vector<unsigned char> bytes;
        std::size_t begin = 0; // what is before has been taken
        std::deque<Entry> entries;

        std::size_t size() const { return bytes.size() - begin; }
        void append(unsigned char const* more, std::size_t length) { bytes.insert(bytes.end(), more, more + length); }
    };

    bool sendAnswers(std::span<Channel::Piece const> pieces, std::size_t count);
    bool queueAnswers(std::span<Channel::Piece const> pieces, std::size_t count, std::size_t taken);
    void beginWaiting();
    void noteTaken(std::size_t count);
    void noteHeldUp();
    void lose(char const* why);
    std::size_t waitingNotifications() const;

    Connection& connection_; // until it is closed, like the owner and the log
    Owner& owner_;
    RepeatedLines& log_;
    std::string const& endpoint_;

    // Of whoever serves the connection.
    bool isShared_ = false;
    std::vector<unsigned char> gathered_;
    std::size_t gatheredCount_ = 0;

    std::atomic<bool> isHeldUp_ = false;
    std::mutex mutex_;
    bool isLost_ = false;
    bool isClosed_ = false;
    void const* turn_ = nullptr; // who sends an answer in parts: what others send goes behind it
    Queue queue_;
    Queue behind_;
    std::size_t answers_ = 0;     // in the queue
    std::size_t answerBytes_ = 0; // of them
    unsigned vainDrains_ = 0;     // in a row
    Clock::time_point stalls_;    // when something must have been taken
    std::size_t lost_ = 0;        // notifications that the client did not take
    std::string why_;             // it was disconnected
};

} // namespace trs
