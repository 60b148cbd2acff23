#include "broker/transport/Relay.h"

#include "broker/transport/Address.h"
#include "broker/transport/Listener.h"

#include <asio/buffer.hpp>
#include <asio/connect.hpp>
#include <asio/generic/stream_protocol.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <array>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace trs {

namespace {

// Of an accepted connection.
asio::generic::stream_protocol protocolOf(int descriptor)
{
    int family = AF_UNIX;
    socklen_t size = sizeof family;
    ::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &family, &size);
    return {family, 0};
}

} // namespace

class Relay::Parts {
public:
    Parts(Endpoint listen, Endpoint itsServer, Tap itsTap, Complain itsComplain)
        : server(std::move(itsServer)), tap(std::move(itsTap)), complain(std::move(itsComplain)),
          listener(context, std::move(listen)), signals(context), timer(context)
    {
    }

    asio::io_context context{1};
    Endpoint const server;
    std::vector<SocketAddress> addresses;
    Tap const tap;
    Complain const complain;
    Listener listener;
    asio::signal_set signals;
    asio::steady_timer timer;
    std::uint32_t connections = 0;
};

// One connection, with its other half.
class Relay::Pair : public std::enable_shared_from_this<Pair> {
public:
    Pair(Parts& parts, int descriptor)
        : parts_(parts), number_(++parts.connections), client_(parts.context), server_(parts.context)
    {
        asio::error_code error;
        client_.assign(protocolOf(descriptor), descriptor, error);
        if (error) {
            ::close(descriptor);
        }
    }

    void start()
    {
        asio::async_connect(server_, parts_.addresses,
                            [self = shared_from_this()](asio::error_code const& error, SocketAddress const&) {
                                if (error) {
                                    self->parts_.complain(self->parts_.server.text() +
                                                          " is not reached: " + error.message());
                                    return;
                                }
                                self->carryAtOnce();
                                self->carry(Direction::toServer);
                                self->carry(Direction::fromServer);
                            });
    }

private:
    using Socket = asio::generic::stream_protocol::socket;

    // Not by configureSocket(), which has the socket block.
    void carryAtOnce()
    {
        asio::error_code ignored; // a local socket has no such option
        client_.set_option(asio::ip::tcp::no_delay(true), ignored);
        server_.set_option(asio::ip::tcp::no_delay(true), ignored);
    }
    void carry(Direction direction)
    {
        bool const isToServer = direction == Direction::toServer;
        Socket& from = isToServer ? client_ : server_;
        Socket& to = isToServer ? server_ : client_;
        auto& room = isToServer ? toServer_ : fromServer_;
        from.async_read_some(asio::buffer(room), [self = shared_from_this(), direction, &to,
                                                  &room](asio::error_code const& error, std::size_t count) {
            if (error) {
                self->endDirection(direction, error);
                return;
            }
            bool const goesOn = self->parts_.tap(self->number_, direction, {room.data(), count});
            asio::async_write(to, asio::buffer(room.data(), count),
                              [self, direction, goesOn](asio::error_code const& failure, std::size_t /*count*/) {
                                  if (!goesOn) {
                                      self->parts_.context.stop();
                                  }
                                  failure ? self->endDirection(direction, failure) : self->carry(direction);
                              });
        });
    }
    // Passes the end of one direction on; the other may still have something to carry.
    void endDirection(Direction direction, asio::error_code const& why)
    {
        asio::error_code ignored;
        if (why == asio::error::eof) {
            (direction == Direction::toServer ? server_ : client_).shutdown(Socket::shutdown_send, ignored);
        } else {
            client_.close(ignored);
            server_.close(ignored);
        }
        if (!parts_.tap(number_, direction, {})) {
            parts_.context.stop();
        }
    }

    Parts& parts_;
    std::uint32_t const number_;
    Socket client_;
    Socket server_;
    std::array<char, 65536> toServer_;
    std::array<char, 65536> fromServer_;
};

Relay::Relay(Endpoint listen, Endpoint server, Tap tap, Complain complain)
    : parts_(std::make_unique<Parts>(std::move(listen), std::move(server), std::move(tap), std::move(complain)))
{
}

Relay::~Relay() = default;

std::string Relay::open()
{
    std::string why = resolve(parts_->context, parts_->server, parts_->addresses);
    return why.empty() ? parts_->listener.open() : why;
}

std::string Relay::endpoint() const { return parts_->listener.endpoint().text(); }

void Relay::run(std::optional<std::chrono::milliseconds> time)
{
    Parts& parts = *parts_;
    parts.listener.start([&parts](int descriptor) { std::make_shared<Pair>(parts, descriptor)->start(); });
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
    parts.context.run();
}

} // namespace trs
