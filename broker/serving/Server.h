// The server's side of this process's broker.
#pragma once

#include "broker/machine/RepeatedLines.h"
#include "broker/machine/Thread.h"
#include "broker/machine/TimeAndChance.h"
#include "broker/serving/ServerConnection.h"
#include "broker/transport/Acceptor.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace trs {

// Listens on any number of endpoints, with one thread that accepts connections and one handler thread for each of
// them. When there are as many connections as may be, the one that has been idle longest gives way to a new one, those
// with subscriptions last; one whose request is being answered never does.
class Server {
public:
    // `tap` may be null.
    explicit Server(ServerTap* tap, std::size_t mostConnections = 1024, TimeAndChance timing = {});
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;
    // Ends listening and all connections, and waits for the threads. Requests that are being answered have the time of
    // a call for that. Gives the run permission back meanwhile.
    ~Server();

    // Empty, or why the endpoint cannot be served.
    std::string listen(Endpoint const& endpoint) { return acceptor_.listen(endpoint); }
    // With the ports that the system chose.
    std::vector<std::string> endpoints() const { return acceptor_.endpoints(); }

private:
    struct Handler {
        std::unique_ptr<ServerConnection> connection; // null when it has ended
        Thread thread;
    };

    void admit(std::unique_ptr<Channel> channel, std::string const& endpoint);
    void removeEnded();
    bool makeRoom();
    void refuse(std::unique_ptr<Channel> channel);
    void tellCountedAt(RepeatedLines::Time due);

    ServerTap* const tap_;
    std::size_t const mostConnections_;
    TimeAndChance const timing_;
    RepeatedLines log_;
    std::deque<std::unique_ptr<Channel>> refused_; // the acceptor's own
    std::mutex mutex_;
    std::condition_variable ended_; // a connection has
    std::list<Handler> handlers_;
    Acceptor acceptor_;
};

} // namespace trs
