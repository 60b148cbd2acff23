#include "broker/serving/Server.h"

#include "broker/framing/Message.h"
#include "broker/objects/RunPermission.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace trs {

namespace {

// Refused connections stay open until others have come, so that the clients read why before they notice the end.
constexpr std::size_t keptRefusals = 8;

} // namespace

Server::Server(ServerTap* tap, std::size_t mostConnections, TimeAndChance timing)
    : tap_(tap), mostConnections_(mostConnections), timing_(std::move(timing)),
      log_(timing_, [this](RepeatedLines::Time due) { tellCountedAt(due); }),
      acceptor_([this](std::unique_ptr<Channel> channel, std::string const& endpoint) {
          admit(std::move(channel), endpoint);
      })
{
}

Server::~Server()
{
    RunPermissionPause const waiting;
    acceptor_.stop();
    {
        std::unique_lock lock(mutex_);
        std::ranges::for_each(handlers_, [](Handler& handler) {
            if (handler.connection != nullptr) {
                handler.connection->endReceiving();
            }
        });
        Deadline const deadline;
        ended_.wait_for(lock, std::chrono::milliseconds(deadline.duration()), [this] {
            return std::ranges::all_of(handlers_, [](Handler const& each) { return each.connection == nullptr; });
        });
        std::ranges::for_each(handlers_, [](Handler& handler) {
            if (handler.connection != nullptr) {
                handler.connection->shutDown();
            }
        });
    }
    handlers_.clear(); // joins their threads
}

// On the accepting thread.
void Server::admit(std::unique_ptr<Channel> channel, std::string const& endpoint)
{
    removeEnded();
    std::lock_guard const lock(mutex_);
    if (handlers_.size() >= mostConnections_ && !makeRoom()) {
        log_.tell(4, "a connection to " + endpoint + " is refused: there are as many as may be, and all are busy");
        refuse(std::move(channel));
        return;
    }
    Handler& handler = handlers_.emplace_back();
    handler.connection = std::make_unique<ServerConnection>(std::move(channel), endpoint, tap_, log_, timing_);
    bool const isStarted = handler.thread.start([this, &handler, served = handler.connection.get()] {
        becomeHandlerThread();
        served->serve();
        // Closed now and not when the thread is joined, and outside the lock.
        std::unique_ptr<ServerConnection> ended;
        std::lock_guard const ending(mutex_);
        ended = std::move(handler.connection);
        ended_.notify_all();
    });
    if (!isStarted) {
        log_.tell(3, "a connection to " + endpoint + " is closed: no thread could be started");
        handlers_.pop_back();
    }
}

// Under the lock. False when nobody can give way.
bool Server::makeRoom()
{
    for (;;) {
        std::size_t count = 0;
        ServerConnection* longest = nullptr;
        ServerConnection::Rest best;
        for (Handler const& handler : handlers_) {
            ServerConnection::Rest const rest = handler.connection != nullptr
                                                    ? handler.connection->rest()
                                                    : ServerConnection::Rest{false, ServerConnection::dismissed};
            count += rest.since != ServerConnection::dismissed ? 1 : 0;
            if (rest.since >= 0 && (longest == nullptr || std::pair(rest.isSubscribed, rest.since) <
                                                              std::pair(best.isSubscribed, best.since))) {
                longest = handler.connection.get();
                best = rest;
            }
        }
        if (count < mostConnections_) {
            return true;
        }
        if (longest == nullptr) {
            return false;
        }
        if (longest->dismiss(best.since)) {
            log_.tell(4, "an idle connection is closed: there are as many as may be, and another one has come");
            return true;
        }
    }
}

void Server::refuse(std::unique_ptr<Channel> channel)
{
    Greeting const greeting = makeFullGreeting();
    channel->sendSome(greeting.data(), greeting.size());
    channel->endSending();
    refused_.push_back(std::move(channel));
    if (refused_.size() > keptRefusals) {
        refused_.pop_front();
    }
}

// The accepting thread has the time for it.
void Server::tellCountedAt(RepeatedLines::Time due)
{
    acceptor_.after(due - timing_.now(), [this] {
        if (auto const next = log_.tellDue()) {
            tellCountedAt(*next);
        }
    });
}

void Server::removeEnded()
{
    std::list<Handler> ended;
    {
        std::lock_guard const lock(mutex_);
        for (auto handler = handlers_.begin(); handler != handlers_.end();) {
            auto const next = std::next(handler);
            if (handler->connection == nullptr) {
                ended.splice(ended.end(), handlers_, handler);
            }
            handler = next;
        }
    }
    // Their threads are about to end: the join does not wait for anything.
}

} // namespace trs
