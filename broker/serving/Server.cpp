#include "broker/serving/Server.h"

#include "broker/framing/Message.h"
#include "broker/objects/RunPermission.h"

#include <algorithm>
#include <chrono>
#include <sys/resource.h>
#include <utility>

namespace trs {

namespace {

// Refused connections stay open until others have come, so that the clients read why before they notice the end.
constexpr std::size_t keptRefusals = 8;
// Besides connections: what the program opens, and connections that are being refused.
constexpr std::size_t otherDescriptors = 1024;

void raiseDescriptorLimit(std::size_t wanted)
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < wanted && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, wanted);
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

Server::Server(ServerTap* tap, std::size_t mostConnections, TimeAndChance timing, Workers::Limits const& workers)
    : tap_(tap), mostConnections_(mostConnections), timing_(std::move(timing)),
      log_(timing_, [this](RepeatedLines::Time due) { tellCountedAt(due); }), table_(mostConnections),
      workers_(workers), acceptor_([this](std::unique_ptr<Channel> channel, std::string const& endpoint) {
          admit(std::move(channel), endpoint);
      })
{
}

Server::~Server()
{
    RunPermissionPause const waiting;
    acceptor_.stop();
    for (auto const& connection : table_.all()) {
        connection->endReceiving();
    }
    Deadline const deadline;
    if (!table_.awaitNone(std::chrono::milliseconds(deadline.duration()))) {
        for (auto const& connection : table_.all()) {
            connection->shutDown();
        }
    }
    workers_.stop(); // waits for what is being executed
    while (!table_.awaitNone(std::chrono::milliseconds(100))) {
        for (auto const& connection : table_.all()) {
            connection->shutDown();
        }
    }
    if (poller_ != nullptr) {
        poller_->stop();
        polling_.join();
    }
}

std::string Server::listen(Endpoint const& endpoint)
{
    std::string why = startPolling();
    if (why.empty()) {
        why = acceptor_.listen(endpoint);
    }
    if (why.empty()) {
        raiseDescriptorLimit(mostConnections_ + otherDescriptors);
    }
    return why;
}

std::string Server::startPolling()
{
    if (polling_.isStarted()) {
        return {};
    }
    poller_ = std::make_unique<Poller>(Poller::Tells::once);
    if (!poller_->complaint().empty()) {
        return poller_->complaint();
    }
    return polling_.start([poller = poller_.get()] { poller->run(); }) ? ""
                                                                       : "no thread could be started for connections";
}

ServerCounters Server::counters() const
{
    ServerCounters all = total_.get();
    Workers::Numbers const workers = workers_.numbers();
    all.connections = table_.size();
    all.threads = workers.threads;
    all.queued = workers.queued;
    all.executing = workers.executing;
    all.waiting = workers.waiting;
    return all;
}

// On the accepting thread.
void Server::admit(std::unique_ptr<Channel> channel, std::string const& endpoint)
{
    switch (table_.makeRoom()) {
    case ConnectionTable::Room::none:
        log_.tell(4, "a connection to " + endpoint + " is refused: there are as many as may be, and all are busy");
        refuse(std::move(channel));
        return;
    case ConnectionTable::Room::made:
        log_.tell(4, "an idle connection is closed: there are as many as may be, and another one has come");
        break;
    case ConnectionTable::Room::free:
        break;
    }
    auto const connection =
        std::make_shared<ServerConnection>(std::move(channel), *endpoints_.insert(endpoint).first,
                                           ServerConnection::House{*poller_, workers_, table_, log_, total_, tap_});
    table_.add(connection);
    connection->open();
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

} // namespace trs
