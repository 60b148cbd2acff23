// A server by the book: executes the calls of each connection in their order, and tells subscribers of each execution.
#pragma once

#include "broker/calls/Multiplexer.h"
#include "tests/simulation/Network.h"

#include <algorithm>

// A call, and all that is known of it.
struct trs::Multiplexer::Call {
    std::uint64_t id = 0;
    unsigned key = 0; // of the object
    std::uint64_t size = 0;
    Ticket ticket = 0;
    simulation::Time deadline = 0;
    std::uint32_t number = 0; // under which it goes out, or went last
    bool isOut = false;       // over the present connection
    unsigned executions = 0;
    unsigned ends = 0;
    bool isSaidUnsent = false;
    bool mustSucceed = false;
};

namespace simulation {

using Call = trs::Multiplexer::Call;

constexpr unsigned objectCount = 6;

class ModelServer final : public Connection::Holder {
public:
    explicit ModelServer(World& world) : world_(world) {}

    // What is true of the objects, whoever knows of it.
    std::array<std::uint64_t, objectCount> versions{};
    std::deque<Call> calls;

    bool isUp() const { return isUp_; }
    void accept(Connection& connection)
    {
        std::erase_if(sessions_, [](Session const& session) {
            return !session.connection->isHeld(Connection::server) && !session.isBusy;
        });
        sessions_.push_back({&connection, {}, false, 0});
    }
    void restart()
    {
        world_.note("server restarts");
        world_.count(Rare::serverRestarted);
        isUp_ = false;
        for (Session const& session : std::exchange(sessions_, {})) {
            if (session.connection->isHeld(Connection::server)) {
                session.connection->close(Connection::server);
            }
        }
        world_.after(world_.random.between(0, 3 * second), [this] { isUp_ = true; });
    }
    // Somebody else changes an object.
    void change(unsigned key) { execute(key); }

    void receive(Connection& connection) override
    {
        Session* const session = find(connection);
        if (session == nullptr) {
            return;
        }
        while (auto const message = connection.take(Connection::server)) {
            session->requests.push_back(*message);
        }
        serve(connection);
    }
    void sendMore(Connection& connection) override { connection.flush(Connection::server); }
    void lost(Connection& connection) override
    {
        if (Session* const session = find(connection)) {
            if (world_.random.happens(500)) {
                session->requests.clear(); // else they are executed all the same
            }
            session->subscriptions = 0;
        }
    }

private:
    struct Session {
        Connection* connection;
        std::deque<Message> requests;
        bool isBusy;
        std::uint64_t subscriptions; // objects, as bits
    };
    static constexpr std::uint64_t mostUnsent = 3000; // bytes for a subscriber

    Session* find(Connection const& connection)
    {
        auto const found = std::ranges::find(sessions_, &connection, &Session::connection);
        return found != sessions_.end() ? &*found : nullptr;
    }

    void serve(Connection& connection)
    {
        Session* const session = find(connection);
        if (session == nullptr || session->isBusy || session->requests.empty()) {
            return;
        }
        session->isBusy = true;
        world_.after(world_.random.between(10, 2 * millisecond), [this, &connection] {
            if (Session* const served = find(connection)) {
                served->isBusy = false;
                if (!served->requests.empty()) {
                    Message const request = served->requests.front();
                    served->requests.pop_front();
                    answer(*served, request);
                    serve(connection);
                }
            }
        });
    }
    void answer(Session& session, Message const& request)
    {
        std::uint64_t const bit = std::uint64_t{1} << request.key;
        switch (request.kind) {
        case Message::Kind::call:
            answerCall(session, request);
            break;
        case Message::Kind::subscribe:
        case Message::Kind::renew: {
            bool const isThere = request.kind == Message::Kind::renew || !world_.random.happens(world_.weather.missing);
            world_.note("server subscribes", request.key, isThere);
            if (isThere && session.connection->isHeld(Connection::server)) {
                session.subscriptions |= bit;
                session.connection->known |= bit;
            }
            send(session,
                 {isThere ? Message::Kind::confirmed : Message::Kind::noObject, request.key, request.number, 0, 12});
            break;
        }
        default:
            session.subscriptions &= ~bit;
        }
    }
    void answerCall(Session& session, Message const& request)
    {
        Weather const& weather = world_.weather;
        Call& asked = calls[request.value];
        world_.note("server executes", request.value, request.number);
        ++asked.executions;
        world_.claim(asked.executions == 1, "a call was carried out twice", asked.id);
        world_.claim(!asked.isSaidUnsent, "a call was carried out that was said not to be", asked.id);
        execute(request.key);
        if (world_.random.happens(weather.drop)) {
            return;
        }
        if (world_.random.happens(weather.lie)) {
            send(session, {Message::Kind::lie, 0, 0, 0, 12});
        }
        Message const reply{Message::Kind::reply, request.key, request.number, request.value, 20};
        if (world_.random.happens(weather.late)) {
            // Others overtake it.
            world_.after(world_.random.between(0, second), [this, connection = session.connection, reply] {
                if (Session* const served = find(*connection)) {
                    send(*served, reply);
                }
            });
            return;
        }
        send(session, reply);
        if (world_.random.happens(weather.twice)) {
            send(session, reply);
        }
    }
    void execute(unsigned key)
    {
        ++versions[key];
        world_.note("object changes", key, versions[key]);
        for (Session& session : sessions_) {
            if ((session.subscriptions >> key & 1) != 0) {
                send(session, {Message::Kind::event, key, 0, versions[key], 60});
                if (session.connection->unsent(Connection::server) > mostUnsent) {
                    world_.count(Rare::slowSubscriberLeft);
                    session.subscriptions = 0;
                    session.connection->close(Connection::server);
                }
            }
        }
    }
    static void send(Session& session, Message const& message)
    {
        if (session.connection->isHeld(Connection::server)) {
            session.connection->send(Connection::server, message);
        }
    }

    World& world_;
    bool isUp_ = true;
    std::deque<Session> sessions_;
};

// Makes connections to the server, for one who may have a new one at a time.
class Dialer {
public:
    Dialer(World& world, ModelServer& server) : world_(world), server_(server) {}

    bool isDialing() const { return isDialing_; }
    // Ends in one of the two, unless it is stopped.
    void dial(Connection::Holder& holder, std::function<void(Connection*)> done)
    {
        isDialing_ = true;
        Weather const& weather = world_.weather;
        bool const hangs = world_.random.happens(weather.hang);
        bool const isRefused = world_.random.happens(weather.refuse);
        Time const time = hangs ? 2 * second : world_.random.between(100, 2 * weather.delay);
        world_.after(time, [this, &holder, hangs, isRefused, attempt = ++attempt_, done = std::move(done)] {
            if (attempt != attempt_) {
                return;
            }
            isDialing_ = false;
            if (hangs || isRefused || !server_.isUp()) {
                world_.note("refused");
                world_.count(Rare::refused);
                done(nullptr);
                return;
            }
            Connection& connection = connections_.emplace_back(world_, holder, server_);
            server_.accept(connection);
            if (world_.weather.cutInterval != 0) {
                world_.after(world_.random.between(0, 2 * world_.weather.cutInterval),
                             [this, &connection] { cut(connection); });
            }
            done(&connection);
        });
    }
    void stop()
    {
        isDialing_ = false;
        ++attempt_;
    }

private:
    void cut(Connection& connection)
    {
        if (world_.weather.cutInterval != 0) { // not healed meanwhile
            connection.cut();
        }
    }

    World& world_;
    ModelServer& server_;
    std::deque<Connection> connections_;
    bool isDialing_ = false;
    unsigned attempt_ = 0;
};

} // namespace simulation
