#include "broker/transport/SocketDialer.h"

#include "broker/transport/SocketChannel.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace trs {

namespace {

constexpr int cutInterval = 50; // how often whoever waits looks for the cut, in milliseconds

// 0, or the error. Asio's own synchronous connect knows no deadline.
int connectSocket(int descriptor, SocketAddress const& address, Deadline const& deadline, Cut const& cut)
{
    while (::connect(descriptor, address.data(), static_cast<socklen_t>(address.size())) != 0) {
        bool const isQueueFull = errno == EAGAIN; // a local server's; it was waited for
        if (errno == EISCONN) {
            return 0;
        }
        if (!isQueueFull && errno != EINPROGRESS && errno != EINTR && errno != EALREADY) {
            return errno;
        }
        int const remaining = deadline.remaining();
        if (remaining == 0 || cut.isCut()) {
            return remaining == 0 ? ETIMEDOUT : ECANCELED;
        }
        pollfd waiting{descriptor, POLLOUT, 0};
        if (!isQueueFull && ::poll(&waiting, 1, std::min(remaining, cutInterval)) > 0) {
            int error = 0;
            socklen_t size = sizeof error;
            ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
            return error;
        }
    }
    return 0;
}

} // namespace

std::unique_ptr<Channel> SocketDialer::dial(std::size_t way, Deadline& deadline, Cut const& cut, std::string& why) const
{
    SocketAddress const& address = addresses_[way];
    int const family = address.protocol().family();
    bool const isLocal = family == AF_UNIX;
    int const descriptor = ::socket(family, SOCK_STREAM | SOCK_CLOEXEC | (isLocal ? 0 : SOCK_NONBLOCK), 0);
    if (isLocal) {
        // Its queue can be waited for only so. If many tried again and again, the server would not get to accept them.
        timeval const interval{0, suseconds_t{std::clamp(deadline.remaining(), 1, cutInterval)} * 1000};
        ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &interval, sizeof interval);
    }
    int const error = descriptor < 0 ? errno : connectSocket(descriptor, address, deadline, cut);
    if (error != 0) {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        why = systemErrorText(error);
        return nullptr;
    }
    configureSocket(descriptor, family);
    return std::make_unique<SocketChannel>(descriptor);
}

std::unique_ptr<Channel> SocketDialer::begin(std::size_t way, bool& isTooEarly, std::string& why) const
{
    SocketAddress const& address = addresses_[way];
    int const family = address.protocol().family();
    int const descriptor = ::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    bool const isBegun =
        descriptor >= 0 &&
        (::connect(descriptor, address.data(), static_cast<socklen_t>(address.size())) == 0 || errno == EINPROGRESS);
    isTooEarly = !isBegun && descriptor >= 0 && errno == EAGAIN;
    if (!isBegun) {
        why = systemErrorText(errno);
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        return nullptr;
    }
    configureSocket(descriptor, family);
    return std::make_unique<SocketChannel>(descriptor);
}

} // namespace trs
