// All connections of a server, and who of them gives way.
#pragma once

#include "broker/serving/ServerConnection.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace trs {

// When there are as many connections as may be, the one that has been idle longest gives way to a new one, those with
// subscriptions last; one whose request is being answered never does. May be used from any thread.
class ConnectionTable {
public:
    explicit ConnectionTable(std::size_t most) : most_(most) {}

    enum class Room { free, made, none };
    // Whether there is room for another one, or somebody gave way.
    Room makeRoom();
    void add(std::shared_ptr<ServerConnection> const& connection);
    // A connection is idle from now on, or another kind of idle; or is so no longer.
    void rest(ServerConnection& connection, ServerConnection::Idle idle);
    void unrest(ServerConnection& connection);
    // It has ended.
    void remove(ServerConnection& connection);

    std::vector<std::shared_ptr<ServerConnection>> all() const;
    std::size_t size() const;
    // Until all have ended. False when the time is over.
    bool awaitNone(std::chrono::milliseconds time);

private:
    using List = std::list<ServerConnection*>;

    void leaveList(ServerConnection& connection);
    static bool dismissOne(List& list, bool isSubscribed);

    std::size_t const most_;
    mutable std::mutex mutex_;
    std::condition_variable ended_;
    std::list<std::shared_ptr<ServerConnection>> all_;
    std::size_t dismissed_ = 0; // of them, which are about to end
    // Those that are idle, the longest first. Few stay with a worker.
    List waiting_;
    List waitingSubscribed_;
    List staying_;
};

} // namespace trs
