// The server's side of this process's broker.
#pragma once

#include "broker/machine/Thread.h"
#include "broker/serving/ServerConnection.h"
#include "broker/transport/Listener.h"

#include <asio/io_context.hpp>

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace trs {

// Listens on any number of endpoints, with one thread that accepts connections and one handler thread for each of
// them.
class Server {
public:
    explicit Server(ServerTap* tap) : tap_(tap) {}
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;
    // Ends listening and all connections, and waits for the threads. Gives the run permission back meanwhile.
    ~Server();

    // Empty, or why the endpoint cannot be served.
    std::string listen(Endpoint const& endpoint);
    // With the ports that the system chose.
    std::vector<std::string> endpoints() const;

private:
    struct Handler {
        std::unique_ptr<ServerConnection> connection; // null when it has ended
        Thread thread;
    };

    void admit(std::unique_ptr<Channel> channel, std::string const& endpoint);
    void removeEnded();

    ServerTap* const tap_; // null: none
    asio::io_context context_{1};
    std::vector<std::unique_ptr<Listener>> listeners_;
    Thread acceptor_;
    std::mutex mutex_;
    std::list<Handler> handlers_;
};

} // namespace trs
