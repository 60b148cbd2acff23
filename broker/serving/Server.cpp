#include "broker/serving/Server.h"

#include "broker/objects/RunPermission.h"
#include "broker/transport/Transport.h"
#include "platform/NmaLogHelper.h"

#include <asio/executor_work_guard.hpp>
#include <asio/post.hpp>

namespace trs {

namespace {

constexpr std::size_t mostConnections = 1024;

} // namespace

Server::~Server()
{
    RunPermissionPause const waiting;
    context_.stop();
    acceptor_.join();
    listeners_.clear();
    {
        std::lock_guard const lock(mutex_);
        for (Handler& handler : handlers_) {
            if (handler.connection != nullptr) {
                handler.connection->shutDown();
            }
        }
    }
    handlers_.clear(); // joins their threads
}

std::string Server::listen(Endpoint const& endpoint)
{
    auto listener = makeListener(context_, endpoint);
    if (std::string why = listener->open(); !why.empty()) {
        return why;
    }
    std::string const text = listener->endpoint().text();
    if (!acceptor_.isStarted()) {
        bool const isStarted = acceptor_.start([this] {
            auto const keepRunning = asio::make_work_guard(context_);
            context_.run();
        });
        if (!isStarted) {
            return LogMakeString("endpoint '%s' cannot be served: no thread could be started", text.c_str());
        }
    }
    asio::post(context_, [this, text, started = listener.get()] {
        started->start([this, text](std::unique_ptr<Channel> channel) { admit(std::move(channel), text); });
    });
    listeners_.push_back(std::move(listener));
    return {};
}

std::vector<std::string> Server::endpoints() const
{
    std::vector<std::string> texts;
    for (std::unique_ptr<Listener> const& listener : listeners_) {
        texts.push_back(listener->endpoint().text());
    }
    return texts;
}

// On the accepting thread.
void Server::admit(std::unique_ptr<Channel> channel, std::string const& endpoint)
{
    auto connection = std::make_unique<ServerConnection>(std::move(channel), endpoint, tap_);
    removeEnded();
    std::lock_guard const lock(mutex_);
    if (handlers_.size() >= mostConnections) {
        LogDispatch(4, LogMakeString("a connection to %s is closed: there are %zu already", endpoint.c_str(),
                                     handlers_.size()));
        return;
    }
    Handler& handler = handlers_.emplace_back();
    handler.connection = std::move(connection);
    bool const isStarted = handler.thread.start([this, &handler, served = handler.connection.get()] {
        becomeHandlerThread();
        served->serve();
        // Closed now and not when the thread is joined, and outside the lock.
        std::unique_ptr<ServerConnection> ended;
        std::lock_guard const ending(mutex_);
        ended = std::move(handler.connection);
    });
    if (!isStarted) {
        LogDispatch(3, "a connection to " + endpoint + " is closed: no thread could be started");
        handlers_.pop_back();
    }
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
