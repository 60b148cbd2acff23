#include "broker/calls/Peer.h"

#include "broker/objects/RunPermission.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <utility>

namespace trs {

namespace {

constexpr std::size_t mostIdle = 64;
// A thread takes another one's connection when that one has not called for a while, or when there are many.
constexpr std::int64_t leftMilliseconds = 1000;
constexpr std::size_t manyIdle = 16;
// A connection that was used a moment ago is taken to be alive: asking costs a system call.
constexpr std::int64_t restMilliseconds = 10;

} // namespace

Peer::Peer(std::string endpoint, std::unique_ptr<Dialer> dialer, unsigned long number, TimeAndChance timing)
    : endpoint_(std::move(endpoint)), connector_(std::move(dialer)), number_(number),
      calls_(std::make_shared<CallLink>(*this)), events_(std::make_shared<EventLink>(*this, std::move(timing)))
{
    idle_.reserve(mostIdle);
}

void Peer::open()
{
    cut_.mend();
    calls_->open();
    isOpen_.store(true, std::memory_order_release);
}

void Peer::close()
{
    isOpen_.store(false, std::memory_order_release);
    cut_.cut();
    calls_->close();
    events_->stop();
    dropIdle();
}

bool Peer::isOneLeft(Deadline const& deadline) const
{
    return idle_.size() >= manyIdle ||
           (!idle_.empty() && deadline.start() - idle_.front().connection->lastUse() > leftMilliseconds);
}

std::unique_ptr<Connection> Peer::takeIdle(Deadline const& deadline)
{
    std::unique_ptr<Connection> connection;
    {
        std::lock_guard const lock(mutex_);
        auto place = std::find_if(idle_.rbegin(), idle_.rend(),
                                  [](Idle const& idle) { return idle.user == std::this_thread::get_id(); });
        if (place == idle_.rend()) {
            if (!isOneLeft(deadline)) {
                return nullptr;
            }
            --place; // the one that has been idle longest
        }
        connection = std::move(place->connection);
        idle_.erase(std::next(place).base());
    }
    if (deadline.start() - connection->lastUse() > restMilliseconds && connection->isStale()) {
        dropIdle();
        return nullptr;
    }
    return connection;
}

void Peer::giveBack(std::unique_ptr<Connection> connection)
{
    std::lock_guard const lock(mutex_);
    if (idle_.size() < mostIdle && isOpen()) {
        idle_.push_back({std::this_thread::get_id(), std::move(connection)});
    }
}

void Peer::dropIdle()
{
    std::vector<Idle> dropped;
    std::lock_guard const lock(mutex_);
    dropped.swap(idle_);
    idle_.reserve(mostIdle);
}

std::unique_ptr<Connection> Peer::connect(Deadline& deadline, std::string& why)
{
    return connector_.connect(deadline, cut_, why);
}

// Sends the message over the connection, or over a new one when there is none, or when it turns out to be dead before
// it has taken a byte: nothing is in flight then.
bool Peer::transfer(std::unique_ptr<Connection>& connection, TipprmiStream& message, Deadline& deadline,
                    Failure& failure)
{
    using Kind = CallFailure::Kind;
    for (bool isReused = connection != nullptr;; isReused = false) {
        if (connection == nullptr) {
            connection = connect(deadline, failure.reason);
            if (connection == nullptr) {
                failure.kind = deadline.remaining() == 0 ? Kind::deadline : Kind::notConnected;
                return false;
            }
        }
        finishMessage(message, connection->nextNumber());
        switch (connection->send(message.data(), message.size(), deadline)) {
        case Connection::Sent::all:
            return true;
        case Connection::Sent::nothing:
            dropIdle();
            if (!isReused) {
                failure.kind = Kind::connectionLost;
                failure.reason = "the connection was lost before the request was sent";
                return false;
            }
            connection.reset();
            break;
        case Connection::Sent::part: // which nobody can carry out
            if (deadline.remaining() == 0) {
                failure.kind = Kind::deadline;
                failure.reason = LogMakeString("the request was not taken within %d ms", deadline.duration());
            } else {
                dropIdle();
                failure.kind = Kind::connectionLost;
                failure.reason = "the connection was lost while the request was sent";
            }
            return false;
        }
    }
}

// Whether it answers an earlier request over this connection once more: that one had its answer, as the connection is
// still in use.
bool Peer::isRepeated(MessageHeader const& answer, std::uint32_t number)
{
    bool const isAnswer = answer.kind == MessageKind::reply || answer.kind == MessageKind::locateReply;
    return isAnswer && answer.number != 0 && answer.number < number;
}

bool Peer::receiveAnswer(Connection& connection, MessageKind kind, TipprmiStream& answer, MessageHeader& header,
                         std::uint32_t number, Deadline& deadline, Failure& failure)
{
    using Kind = CallFailure::Kind;
    failure.carriedOut = CallFailure::CarriedOut::unknown;
    Connection::Received received = connection.receive(answer, deadline);
    while (received == Connection::Received::message) {
        bool const isWhole = readHeader(answer, header);
        if (isWhole && header.kind == kind && header.number == number) [[likely]] {
            failure.carriedOut = CallFailure::CarriedOut::no;
            return true;
        }
        if (!isWhole || !isRepeated(header, number)) {
            failure.kind = Kind::malformedReply;
            failure.reason = "what came back does not answer the request";
            return false;
        }
        deadline.startWaiting();
        received = deadline.remaining() != 0 ? connection.receive(answer, deadline) : Connection::Received::timedOut;
    }
    switch (received) {
    case Connection::Received::malformed:
        failure.kind = Kind::malformedReply;
        failure.reason = "what came back is no message";
        return false;
    case Connection::Received::timedOut:
        failure.kind = Kind::deadline;
        failure.reason = LogMakeString("no reply within %d ms", deadline.duration());
        return false;
    case Connection::Received::message:
    case Connection::Received::closed:
    case Connection::Received::lost:
        break;
    }
    dropIdle();
    failure.kind = Kind::connectionLost;
    failure.reason = "the connection was lost while the reply was awaited";
    return false;
}

bool Peer::exchange(TipprmiStream& message, MessageKind answerKind, TipprmiStream& answer, MessageHeader& header,
                    Deadline& deadline, Failure& failure)
{
    if (!isOpen()) {
        failure.kind = CallFailure::Kind::notConnected;
        failure.reason = "the peer was removed";
        return false;
    }
    if (message.size() > TIPPRMI_MAX_MESSAGE) {
        failure.kind = CallFailure::Kind::refused;
        failure.reason =
            LogMakeString("the request has %zu bytes and a message %zu at most", message.size(), TIPPRMI_MAX_MESSAGE);
        return false;
    }
    RunPermissionPause const waiting;
    std::unique_ptr<Connection> connection = takeIdle(deadline);
    if (!transfer(connection, message, deadline, failure) ||
        !receiveAnswer(*connection, answerKind, answer, header, connection->lastNumber(), deadline, failure)) {
        failure.reason = isOpen() ? failure.reason : "the peer was removed meanwhile";
        return false;
    }
    connection->setLastUse(deadline.start());
    giveBack(std::move(connection));
    return true;
}

Peer::Located Peer::locate(TipprmiOID const& oid, Deadline& deadline, Failure& failure)
{
    TipprmiStream message(100);
    TipprmiStream answer(100);
    MessageHeader header{};
    beginAddressed(message, MessageKind::locate, 0, oid, 0, 0);
    if (!exchange(message, MessageKind::locateReply, answer, header, deadline, failure)) {
        return Located::unreachable;
    }
    return header.status() == ReplyStatus::done ? Located::there : Located::notThere;
}

} // namespace trs
