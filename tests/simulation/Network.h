// Connections: bytes come in their order, or the connection is lost.
#pragma once

#include "tests/simulation/World.h"

#include <deque>
#include <optional>

namespace simulation {

struct Message {
    enum class Kind : std::uint8_t { call, reply, lie, subscribe, renew, unsubscribe, confirmed, noObject, event };
    Kind kind;
    unsigned key; // which object
    std::uint32_t number;
    std::uint64_t value; // the call, or what an event tells
    std::uint64_t size;
};

class Connection {
public:
    enum Side { client, server };
    // Who has an end of connections.
    class Holder {
    public:
        virtual void receive(Connection& connection) = 0; // something has come
        virtual void sendMore(Connection& connection) = 0;
        virtual void lost(Connection& connection) = 0; // and closed by that

    protected:
        ~Holder() = default;
    };

    Connection(World& world, Holder& ofClient, Holder& ofServer) : world_(world), holders_{&ofClient, &ofServer} {}
    Connection(Connection const&) = delete;
    Connection& operator=(Connection const&) = delete;

    bool isHeld(Side side) const { return holders_[side] != nullptr; }
    // How many bytes are taken at the moment.
    std::uint64_t room(Side from) const
    {
        Stream const& stream = streams_[from];
        auto const buffer = static_cast<std::uint64_t>(world_.weather.buffer);
        return buffer - std::min(buffer, stream.written - stream.read);
    }
    // A message begins; its bytes follow.
    void begin(Side from, Message const& message)
    {
        Stream& stream = streams_[from];
        stream.begun += message.size;
        stream.messages.push_back({message, stream.begun});
    }
    void write(Side from, std::uint64_t bytes)
    {
        Stream& stream = streams_[from];
        stream.written += bytes;
        Weather const& weather = world_.weather;
        Time const delay = world_.random.between(100, weather.delay) +
                           (world_.random.happens(weather.slow) ? world_.random.between(0, second) : 0);
        stream.lastArrival = std::max(stream.lastArrival, world_.now() + delay);
        stream.onTheWay.push_back(stream.written);
        world_.after(stream.lastArrival - world_.now(), [this, from] { arrive(from); });
    }
    // The whole message, sooner or later.
    void send(Side from, Message const& message)
    {
        begin(from, message);
        streams_[from].unsent += message.size;
        flush(from);
    }
    void flush(Side from)
    {
        std::uint64_t const bytes = std::min(streams_[from].unsent, room(from));
        if (bytes != 0) {
            streams_[from].unsent -= bytes;
            write(from, bytes);
        }
    }
    std::uint64_t unsent(Side from) const { return streams_[from].unsent; }
    // The next one that has come whole.
    std::optional<Message> take(Side by)
    {
        Stream& stream = streams_[other(by)];
        if (stream.read != stream.arrived) {
            bool const wasFull = room(other(by)) == 0;
            stream.read = stream.arrived;
            if (wasFull) {
                world_.after(world_.random.between(50, world_.weather.delay), [this, by] {
                    if (Holder* const holder = holders_[other(by)]) {
                        holder->sendMore(*this);
                    }
                });
            }
        }
        if (stream.messages.empty() || stream.messages.front().second > stream.arrived) {
            return std::nullopt;
        }
        Message const message = stream.messages.front().first;
        stream.messages.pop_front();
        return message;
    }
    // Any part of what is under way arrives yet, and both sides notice in their time.
    void cut()
    {
        if (std::exchange(isCut_, true)) {
            return;
        }
        world_.note("cut");
        for (Side const from : {client, server}) {
            Stream& stream = streams_[from];
            stream.limit = stream.arrived + world_.random.upTo(stream.written - stream.arrived);
            Time const noticed = world_.now() + world_.random.between(0, 100 * millisecond);
            world_.after(std::max(stream.lastArrival, noticed) - world_.now(), [this, from] { end(other(from)); });
        }
    }
    void close(Side by)
    {
        holders_[by] = nullptr;
        cut();
    }

    std::uint64_t known = 0; // the objects, as bits, whose subscription the server has known on this connection

private:
    struct Stream {
        std::deque<std::pair<Message, std::uint64_t>> messages; // and where each ends
        std::deque<std::uint64_t> onTheWay;
        std::uint64_t begun = 0;
        std::uint64_t unsent = 0;
        std::uint64_t written = 0;
        std::uint64_t arrived = 0;
        std::uint64_t read = 0;
        std::uint64_t limit = ~std::uint64_t{0};
        Time lastArrival = 0;
        Time stalledUntil = 0;
    };
    static Side other(Side side) { return side == client ? server : client; }

    void arrive(Side from)
    {
        Stream& stream = streams_[from];
        stream.arrived = std::min(stream.onTheWay.front(), std::max(stream.limit, stream.arrived));
        stream.onTheWay.pop_front();
        if (world_.random.happens(world_.weather.stall)) {
            stream.stalledUntil = world_.now() + world_.random.between(0, second);
        }
        tell(from);
    }
    void tell(Side from)
    {
        Stream const& stream = streams_[from];
        if (stream.stalledUntil > world_.now()) {
            world_.after(stream.stalledUntil - world_.now(), [this, from] { tell(from); });
        } else if (Holder* const holder = holders_[other(from)]) {
            holder->receive(*this);
        }
    }
    void end(Side side)
    {
        Stream const& stream = streams_[other(side)];
        if (stream.stalledUntil > world_.now()) {
            world_.after(stream.stalledUntil - world_.now(), [this, side] { end(side); });
            return;
        }
        if (holders_[side] != nullptr) {
            holders_[side]->receive(*this); // what had come before
        }
        if (Holder* const holder = std::exchange(holders_[side], nullptr)) {
            holder->lost(*this);
        }
    }

    World& world_;
    std::array<Holder*, 2> holders_;
    std::array<Stream, 2> streams_; // by who sends
    bool isCut_ = false;
};

} // namespace simulation
