// The server's side of this process's broker.
#pragma once

#include "broker/machine/RepeatedLines.h"
#include "broker/machine/Thread.h"
#include "broker/machine/TimeAndChance.h"
#include "broker/objects/Workers.h"
#include "broker/serving/ConnectionTable.h"
#include "broker/transport/Acceptor.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace trs {

// Listens on any number of endpoints: with a thread that accepts connections, one that waits for all of them, and as
// many workers as there are requests.
class Server {
public:
    // `tap` may be null.
    explicit Server(ServerTap* tap, std::size_t mostConnections = 65536, TimeAndChance timing = {},
                    Workers::Limits const& workers = {});
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;
    // Ends listening and all connections, and waits for the threads. Requests that are being answered have the time of
    // a call for that. Gives the run permission back meanwhile.
    ~Server();

    // Empty, or why the endpoint cannot be served. Raises the process's limit of open descriptors, as far as it may, to
    // what that many connections need.
    std::string listen(Endpoint const& endpoint);
    // With the ports that the system chose.
    std::vector<std::string> endpoints() const { return acceptor_.endpoints(); }
    ServerCounters counters() const;

private:
    std::string startPolling();
    void admit(std::unique_ptr<Channel> channel, std::string const& endpoint);
    void refuse(std::unique_ptr<Channel> channel);
    void tellCountedAt(RepeatedLines::Time due);

    ServerTap* const tap_;
    std::size_t const mostConnections_;
    TimeAndChance const timing_;
    RepeatedLines log_;
    std::deque<std::unique_ptr<Channel>> refused_; // the acceptor's own
    std::set<std::string> endpoints_;              // as well; their texts stay
    std::unique_ptr<Poller> poller_;               // null until it is needed
    Thread polling_;
    Total total_;
    ConnectionTable table_;
    Workers workers_;
    Acceptor acceptor_;
};

} // namespace trs
