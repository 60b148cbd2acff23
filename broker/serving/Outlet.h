// The one way out of a server's connection.
#pragma once

#include "broker/machine/RepeatedLines.h"
#include "broker/machine/Thread.h"
#include "broker/objects/Subscriber.h"
#include "broker/transport/Connection.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace trs {

// Whatever is sent after the greeting goes through here: answers by the connection's handler thread, which closes it in
// the end, and notifications by every thread that notifies. Each goes out whole. An answer waits for the client to take
// it, for the time of a call. Nobody waits for a subscriber to read: notifications that the channel does not take at
// once wait in a queue, which a thread of its own empties. A subscriber that lets the queue run full, or takes nothing
// for the time of a call, is disconnected.
class Outlet final : public Subscriber {
public:
    // One answer, in as many parts as it pleases, on the handler thread: nothing comes between them.
    class Answer {
    public:
        explicit Answer(Outlet& outlet) : outlet_(outlet) {}
        Answer(Answer const&) = delete;
        Answer& operator=(Answer const&) = delete;
        ~Answer();

        // False when the connection is of no use any more.
        bool send(unsigned char const* bytes, std::size_t length);

    private:
        Outlet& outlet_;
        bool hasTurn_ = false;
    };

    // `begin` is how log lines about the connection begin.
    Outlet(Connection& connection, RepeatedLines& log, std::string begin)
        : connection_(connection), log_(log), begin_(std::move(begin))
    {
    }

    // Notifications may come from now on; until then answers need no lock. On the handler thread.
    void admitNotifications() { isShared_ = true; }
    void send(TipprmiStream const& notification) override;
    // Nothing more goes out: the answer at hand stays as it is.
    void abandon();
    // The last thing that is done with the connection.
    void close();

private:
    bool takeTurn(Deadline const& deadline);
    void giveTurn();
    bool sendQueue(std::unique_lock<std::mutex>& lock);
    void drain();
    void lose(char const* why);

    Connection& connection_; // until it is closed, like the log
    RepeatedLines& log_;
    std::string const begin_;
    bool isShared_ = false; // the handler thread's own

    std::mutex mutex_;
    std::condition_variable changed_;
    bool isSending_ = false; // the one who set it sends, and no other
    bool isLost_ = false;
    bool isClosed_ = false;
    std::vector<unsigned char> queue_;
    std::size_t waiting_ = 0; // notifications in the queue
    std::size_t lost_ = 0;    // notifications that the subscriber did not take
    std::string why_;         // it was disconnected
    Thread drainer_;
};

} // namespace trs
