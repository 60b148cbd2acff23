#include "broker/transport/SocketChannel.h"

#include "broker/transport/Address.h"
#include "broker/transport/SocketOrigin.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

namespace trs {

namespace {

constexpr std::size_t mostPieces = 64; // for one system call

bool wouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK; }

} // namespace

SocketChannel::~SocketChannel() { ::close(descriptor_); }

bool SocketChannel::waitFor(short events, Deadline const& deadline) const
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

Channel::Sent SocketChannel::send(unsigned char const* bytes, std::size_t length, Deadline& deadline)
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

std::size_t SocketChannel::sendSome(std::span<Piece const> pieces)
{
    std::array<iovec, mostPieces> places;
    std::size_t sent = 0;
    while (!pieces.empty()) {
        auto const some = pieces.first(std::min(pieces.size(), places.size()));
        std::size_t length = 0;
        std::ranges::transform(some, places.begin(), [&length](Piece const& piece) {
            length += piece.length;
            return iovec{const_cast<unsigned char*>(piece.bytes), piece.length};
        });
        msghdr message{};
        message.msg_iov = places.data();
        message.msg_iovlen = some.size();
        ssize_t count = 0;
        do {
            count = some.size() == 1 ? ::send(descriptor_, some[0].bytes, length, MSG_NOSIGNAL | MSG_DONTWAIT)
                                     : ::sendmsg(descriptor_, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        } while (count < 0 && errno == EINTR);
        sent += count < 0 ? 0 : static_cast<std::size_t>(count);
        if (count < 0 || static_cast<std::size_t>(count) < length) {
            break;
        }
        pieces = pieces.subspan(some.size());
    }
    return sent;
}

void SocketChannel::setReceiveTimeout(int milliseconds)
{
    if (receiveTimeout_ != milliseconds) {
        timeval const time{milliseconds / 1000, suseconds_t{milliseconds % 1000} * 1000};
        ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
        receiveTimeout_ = milliseconds;
    }
}

Channel::Received SocketChannel::receiveRest(unsigned char* place, std::size_t room, Deadline const& deadline,
                                             std::size_t& count)
{
    for (;;) {
        ssize_t const received = ::recv(descriptor_, place, room, MSG_DONTWAIT);
        if (received > 0) {
            count = static_cast<std::size_t>(received);
            return Received::some;
        }
        if (received == 0) {
            return Received::closed;
        }
        if (!wouldBlock() && errno != EINTR) {
            return Received::lost;
        }
        if (!waitFor(POLLIN, deadline)) {
            return Received::timedOut;
        }
    }
}

Channel::Received SocketChannel::receive(unsigned char* place, std::size_t room, Deadline* deadline, std::size_t& count)
{
    ssize_t received = -1;
    bool const isOver = busyWait_.wait([&] {
        received = ::recv(descriptor_, place, room, MSG_DONTWAIT);
        return received >= 0 || !wouldBlock();
    });
    if (!isOver && deadline != nullptr && !deadline->isWhole()) {
        return receiveRest(place, room, *deadline, count);
    }
    if (!isOver) {
        setReceiveTimeout(deadline != nullptr ? deadline->duration() : 0);
        received = ::recv(descriptor_, place, room, 0);
    }
    if (received > 0) {
        count = static_cast<std::size_t>(received);
        return Received::some;
    }
    if (received == 0) {
        return Received::closed;
    }
    if (errno == EINTR) {
        if (deadline != nullptr) {
            deadline->startWaiting(); // a second wait of the whole time would be too long
            return receiveRest(place, room, *deadline, count);
        }
        return receive(place, room, nullptr, count);
    }
    return wouldBlock() ? Received::timedOut : Received::lost;
}

Channel::Received SocketChannel::receiveNow(unsigned char* place, std::size_t room, std::size_t& count)
{
    ssize_t received = -1;
    do {
        received = ::recv(descriptor_, place, room, MSG_DONTWAIT);
    } while (received < 0 && errno == EINTR);
    if (received > 0) {
        count = static_cast<std::size_t>(received);
        return Received::some;
    }
    return received == 0 ? Received::closed : wouldBlock() ? Received::timedOut : Received::lost;
}

bool SocketChannel::watch(Poller& poller, Poller::Number number, Poller::Events events)
{
    bool const wasWatched = isWatched_;
    isWatched_ = events != Poller::nothing;
    return isWatched_ ? poller.watch(descriptor_, number, events, !wasWatched) : poller.ignore(descriptor_);
}

std::string SocketChannel::connectFailure() const
{
    int error = 0;
    socklen_t size = sizeof error;
    ::getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &size);
    return error == 0 ? std::string() : systemErrorText(error);
}

Principal SocketChannel::principal() const { return principalOf(descriptor_); }

bool SocketChannel::isStale() const
{
    unsigned char byte = 0;
    ssize_t const count = ::recv(descriptor_, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    return count >= 0 || !wouldBlock();
}

void SocketChannel::endSending() { ::shutdown(descriptor_, SHUT_WR); }
void SocketChannel::endReceiving() { ::shutdown(descriptor_, SHUT_RD); }
void SocketChannel::shutDown() { ::shutdown(descriptor_, SHUT_RDWR); }

} // namespace trs
