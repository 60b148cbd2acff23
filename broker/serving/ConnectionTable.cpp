#include "broker/serving/ConnectionTable.h"

#include <algorithm>

namespace trs {

// One that is asked something at this moment does not give way; the next one does.
bool ConnectionTable::dismissOne(List& list, bool isSubscribed)
{
    auto const dismissed = std::ranges::find_if(list, [isSubscribed](ServerConnection* connection) {
        return connection->isSubscribed() == isSubscribed && connection->dismiss();
    });
    if (dismissed == list.end()) {
        return false;
    }
    (*dismissed)->isDismissed_ = true;
    return true;
}

ConnectionTable::Room ConnectionTable::makeRoom()
{
    std::lock_guard const lock(mutex_);
    if (all_.size() - dismissed_ < most_) {
        return Room::free;
    }
    if (dismissOne(waiting_, false) || dismissOne(staying_, false) || dismissOne(waitingSubscribed_, true) ||
        dismissOne(staying_, true)) {
        ++dismissed_;
        return Room::made;
    }
    return Room::none;
}

void ConnectionTable::add(std::shared_ptr<ServerConnection> const& connection)
{
    std::lock_guard const lock(mutex_);
    connection->place_ = all_.insert(all_.end(), connection);
}

void ConnectionTable::leaveList(ServerConnection& connection)
{
    if (connection.idleList_ != nullptr) {
        connection.idleList_->erase(connection.idlePlace_);
        connection.idleList_ = nullptr;
    }
}

void ConnectionTable::rest(ServerConnection& connection, ServerConnection::Idle idle)
{
    std::lock_guard const lock(mutex_);
    leaveList(connection);
    if (connection.isDismissed_) {
        return;
    }
    List& list = idle == ServerConnection::Idle::staying ? staying_
                 : connection.isSubscribed()             ? waitingSubscribed_
                                                         : waiting_;
    connection.idlePlace_ = list.insert(list.end(), &connection);
    connection.idleList_ = &list;
}

void ConnectionTable::unrest(ServerConnection& connection)
{
    std::lock_guard const lock(mutex_);
    leaveList(connection);
}

void ConnectionTable::remove(ServerConnection& connection)
{
    std::shared_ptr<ServerConnection> removed; // whose end may want the lock
    std::lock_guard const lock(mutex_);
    leaveList(connection);
    dismissed_ -= connection.isDismissed_ ? 1 : 0;
    removed = std::move(*connection.place_);
    all_.erase(connection.place_);
    if (all_.empty()) {
        ended_.notify_all();
    }
}

std::vector<std::shared_ptr<ServerConnection>> ConnectionTable::all() const
{
    std::lock_guard const lock(mutex_);
    return {all_.begin(), all_.end()};
}

std::size_t ConnectionTable::size() const
{
    std::lock_guard const lock(mutex_);
    return all_.size();
}

bool ConnectionTable::awaitNone(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, time, [this] { return all_.empty(); });
}

} // namespace trs
