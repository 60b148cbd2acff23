// A connection that notifications are sent over.
#pragma once

#include "broker/machine/Thread.h"
#include "broker/objects/Subscriber.h"
#include "broker/transport/Connection.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace trs {

// Shared by the connection's handler thread, which closes it in the end, and by every thread that notifies. Nobody ever
// waits for the subscriber to read: what the socket does not take at once waits in a queue, which a thread of its own
// empties. A subscriber that lets the queue run full, or takes nothing for the time of a call, is disconnected.
class EventSink final : public Subscriber {
public:
    explicit EventSink(Connection& connection) : connection_(&connection) {}

    void send(TipprmiStream const& message) override;
    // The last thing that is done with the connection.
    void close();

private:
    void drain();

    std::mutex mutex_;
    std::condition_variable changed_;
    Connection* connection_;
    std::vector<unsigned char> queue_;
    bool isDraining_ = false; // part of what was queued is on its way
    Thread drainer_;
};

} // namespace trs
