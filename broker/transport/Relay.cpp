#include "broker/transport/Relay.h"

#include "broker/machine/Thread.h"
#include "broker/transport/Transport.h"

#include <asio/executor_work_guard.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <array>
#include <atomic>
#include <csignal>
#include <list>
#include <mutex>

namespace trs {

class Relay::Parts {
public:
    Parts(Endpoint const& listen, Endpoint itsServer, Tap itsTap, Complain itsComplain)
        : server(std::move(itsServer)), tap(std::move(itsTap)), complain(std::move(itsComplain)),
          listener(makeListener(context, listen)), signals(context), timer(context)
    {
    }

    // On any thread.
    void tell(std::uint32_t connection, Direction direction, std::string_view bytes)
    {
        std::lock_guard const lock(telling);
        isOver = isOver || !tap(connection, direction, bytes);
    }
    void stopIfOver()
    {
        if (isOver) {
            context.stop();
        }
    }

    asio::io_context context{1};
    Endpoint const server;
    std::unique_ptr<Dialer> dialer;
    Tap const tap;
    Complain const complain;
    std::unique_ptr<Listener> listener;
    asio::signal_set signals;
    asio::steady_timer timer;
    std::mutex telling;
    std::atomic<bool> isOver = false; // the tap has had enough
    std::uint32_t connections = 0;
    std::list<Pair> pairs;
};

// One connection, with its other half: a thread for each direction.
class Relay::Pair {
public:
    Pair(Parts& parts, std::unique_ptr<Channel> client)
        : parts_(parts), number_(++parts.connections), client_(std::move(client))
    {
    }
    Pair(Pair const&) = delete;
    Pair& operator=(Pair const&) = delete;
    ~Pair()
    {
        end();
        toServer_.join();
    }

    void start()
    {
        if (!toServer_.start([this] { run(); })) {
            parts_.complain("a connection is not carried on: no thread could be started");
            ended_ = 2;
        }
    }
    bool isEnded() const { return ended_ == 2; }

private:
    // Which ends what waits for it.
    void end()
    {
        std::lock_guard const lock(mutex_);
        isEnding_ = true;
        cut_.cut();
        client_->shutDown();
        if (server_ != nullptr) {
            server_->shutDown();
        }
    }
    bool connect()
    {
        Deadline deadline;
        std::string why;
        std::unique_ptr<Channel> channel;
        for (std::size_t way = 0; channel == nullptr && way < parts_.dialer->ways(); ++way) {
            channel = parts_.dialer->dial(way, deadline, cut_, why);
        }
        if (channel == nullptr) {
            parts_.complain(parts_.server.text() + " is not reached: " + why);
            return false;
        }
        std::lock_guard const lock(mutex_);
        server_ = std::move(channel);
        return !isEnding_;
    }
    void run()
    {
        Thread fromServer;
        if (!connect()) {
            client_->shutDown();
            ended_ = 2;
            return;
        }
        if (fromServer.start([this] { carry(Direction::fromServer); })) {
            carry(Direction::toServer);
        } else {
            parts_.complain("a connection is not carried on: no thread could be started");
            end();
            ended_ = 1;
        }
        fromServer.join();
    }
    void carry(Direction direction)
    {
        bool const isToServer = direction == Direction::toServer;
        Channel& from = isToServer ? *client_ : *server_;
        Channel& to = isToServer ? *server_ : *client_;
        std::array<unsigned char, 65536> room;
        for (;;) {
            std::size_t count = 0;
            Channel::Received const received = from.receive(room.data(), room.size(), nullptr, count);
            if (received == Channel::Received::closed) {
                to.endSending(); // the other direction may still have something to carry
                break;
            }
            if (received != Channel::Received::some) {
                end();
                break;
            }
            parts_.tell(number_, direction, {reinterpret_cast<char const*>(room.data()), count});
            Deadline patient(std::chrono::milliseconds::max());
            if (to.send(room.data(), count, patient) != Channel::Sent::all) {
                end();
                break;
            }
            parts_.stopIfOver();
        }
        parts_.tell(number_, direction, {});
        parts_.stopIfOver();
        ++ended_;
    }

    Parts& parts_;
    std::uint32_t const number_;
    std::mutex mutex_;
    Cut cut_; // what is being dialled
    std::unique_ptr<Channel> const client_;
    std::unique_ptr<Channel> server_;
    bool isEnding_ = false;
    std::atomic<int> ended_ = 0; // of the two directions
    Thread toServer_;
};

Relay::Relay(Endpoint const& listen, Endpoint server, Tap tap, Complain complain)
    : parts_(std::make_unique<Parts>(listen, std::move(server), std::move(tap), std::move(complain)))
{
}

Relay::~Relay() = default;

std::string Relay::open()
{
    std::string why;
    parts_->dialer = makeDialer(parts_->server, why);
    return parts_->dialer != nullptr ? parts_->listener->open() : why;
}

std::string Relay::endpoint() const { return parts_->listener->endpoint().text(); }

void Relay::run(std::optional<std::chrono::milliseconds> time)
{
    Parts& parts = *parts_;
    parts.listener->start([&parts](std::unique_ptr<Channel> channel) {
        parts.pairs.remove_if([](Pair const& pair) { return pair.isEnded(); });
        parts.pairs.emplace_back(parts, std::move(channel)).start();
    });
    asio::error_code ignored;
    parts.signals.add(SIGINT, ignored);
    parts.signals.add(SIGTERM, ignored);
    parts.signals.async_wait([&parts](asio::error_code const&, int) { parts.context.stop(); });
    if (time) {
        parts.timer.expires_after(*time);
        parts.timer.async_wait([&parts](asio::error_code const& error) {
            if (!error) {
                parts.context.stop();
            }
        });
    }
    auto const keepRunning = asio::make_work_guard(parts.context);
    parts.context.run();
    parts.pairs.clear();
}

} // namespace trs
