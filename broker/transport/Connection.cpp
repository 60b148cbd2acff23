#include "broker/transport/Connection.h"

#include "broker/framing/Message.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace trs {

namespace {

// Storage for a long message grows with what has arrived, never with what its first bytes claim.
constexpr std::size_t greatestStep = 65536;
constexpr std::size_t leastRoom = 128;

bool wouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK; }

} // namespace

Connection::Connection(int descriptor) : descriptor_(descriptor) {}

Connection::~Connection() { ::close(descriptor_); }

bool Connection::waitFor(short events, Deadline const& deadline) const
{
    for (;;) {
        int const remaining = deadline.remaining();
        if (remaining == 0) {
            return false;
        }
        pollfd waiting{descriptor_, events, 0};
        int const ready = ::poll(&waiting, 1, remaining);
        if (ready > 0 || (ready < 0 && errno != EINTR)) {
            return true; // the transfer itself tells an error best
        }
    }
}

Connection::Sent Connection::send(unsigned char const* bytes, std::size_t length, Deadline& deadline)
{
    std::size_t sent = 0;
    while (sent < length) {
        ssize_t const count = ::send(descriptor_, bytes + sent, length - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (wouldBlock()) {
            deadline.startWaiting();
            if (!waitFor(POLLOUT, deadline)) {
                return Sent::part;
            }
        } else if (errno != EINTR) {
            return sent == 0 ? Sent::nothing : Sent::part;
        }
    }
    return Sent::all;
}

std::size_t Connection::sendSome(TipprmiStream const& message)
{
    ssize_t count = 0;
    do {
        count = ::send(descriptor_, message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

void Connection::setReceiveTimeout(int milliseconds)
{
    if (receiveTimeout_ != milliseconds) {
        timeval const time{milliseconds / 1000, suseconds_t{milliseconds % 1000} * 1000};
        ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
        receiveTimeout_ = milliseconds;
    }
}

Connection::Received Connection::receiveMore(unsigned char* place, std::size_t room, Deadline const& deadline,
                                             std::size_t& count)
{
    for (;;) {
        ssize_t const received = ::recv(descriptor_, place, room, MSG_DONTWAIT);
        if (received > 0) {
            count = static_cast<std::size_t>(received);
            return Received::message;
        }
        if (received == 0 || (!wouldBlock() && errno != EINTR)) {
            return Received::lost;
        }
        if (!waitFor(POLLIN, deadline)) {
            return Received::timedOut;
        }
    }
}

Connection::Received Connection::receiveFirst(unsigned char* place, std::size_t room, Deadline* deadline,
                                              std::size_t& count)
{
    ssize_t received = -1;
    bool const isOver = busyWait_.wait([&] {
        received = ::recv(descriptor_, place, room, MSG_DONTWAIT);
        return received >= 0 || !wouldBlock();
    });
    if (!isOver && deadline != nullptr && !deadline->isWhole()) {
        Received const outcome = receiveMore(place, room, *deadline, count);
        return outcome;
    }
    if (!isOver) {
        setReceiveTimeout(deadline != nullptr ? deadline->duration() : 0);
        received = ::recv(descriptor_, place, room, 0);
    }
    if (received > 0) {
        count = static_cast<std::size_t>(received);
        return Received::message;
    }
    if (received == 0) {
        return Received::closed;
    }
    if (errno == EINTR) {
        if (deadline != nullptr) {
            deadline->startWaiting(); // a second wait of the whole time would be too long
            return receiveMore(place, room, *deadline, count);
        }
        return receiveFirst(place, room, nullptr, count);
    }
    return wouldBlock() ? Received::timedOut : Received::lost;
}

Connection::Received Connection::receive(TipprmiStream& message, Deadline* deadline)
{
    message.clear();
    if (ahead_.size() != 0) {
        std::memcpy(message.extend(ahead_.size()), ahead_.data(), ahead_.size());
        ahead_.clear();
    } else {
        // Room for another message like the last one, so that one system call gets the whole.
        std::size_t const room = std::clamp(lastLength_, leastRoom, greatestStep);
        std::size_t count = 0;
        Received const outcome = receiveFirst(message.extend(room), room, deadline, count);
        if (outcome != Received::message) {
            message.clear();
            return outcome;
        }
        message.truncate(count);
    }

    // The rest has what is left of a call's time. A message that comes by itself has its own.
    std::size_t length = message.size() < 4 ? 4 : messageLength(message.data());
    if (length != 0 && message.size() < length) {
        Deadline const rest = deadline != nullptr ? *deadline : Deadline();
        while (length != 0 && message.size() < length) {
            std::size_t const had = message.size();
            std::size_t const room = std::min(length - had, greatestStep);
            std::size_t count = 0;
            Received const outcome = receiveMore(message.extend(room), room, rest, count);
            if (outcome != Received::message) {
                message.clear();
                return outcome;
            }
            message.truncate(had + count);
            if (length == 4 && message.size() == 4) {
                length = messageLength(message.data());
            }
        }
    }
    if (length == 0) {
        return Received::malformed;
    }
    if (message.size() > length) {
        std::size_t const excess = message.size() - length;
        std::memcpy(ahead_.extend(excess), message.data() + length, excess);
        message.truncate(length);
    }
    lastLength_ = length;
    return Received::message;
}

Connection::Received Connection::receiveBytes(unsigned char* bytes, std::size_t length, Deadline& deadline)
{
    deadline.startWaiting();
    for (std::size_t had = 0; had < length;) {
        std::size_t count = 0;
        Received const outcome = receiveMore(bytes + had, length - had, deadline, count);
        if (outcome != Received::message) {
            return outcome;
        }
        had += count;
    }
    return Received::message;
}

void Connection::shutDown() { ::shutdown(descriptor_, SHUT_RDWR); }

bool Connection::isStale() const
{
    unsigned char byte = 0;
    ssize_t const count = ::recv(descriptor_, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    return count >= 0 || !wouldBlock() || ahead_.size() != 0;
}

} // namespace trs
