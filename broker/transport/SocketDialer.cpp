#include "broker/transport/SocketDialer.h"

#include "broker/transport/SocketChannel.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace trs {

namespace {

// 0, or the error. Asio's own synchronous connect knows no deadline.
int connectSocket(int descriptor, SocketAddress const& address, Deadline const& deadline)
{
    while (::connect(descriptor, address.data(), static_cast<socklen_t>(address.size())) != 0) {
        if (errno == EAGAIN) {
            // A local server whose queue is full: there is nothing to wait for but time.
            if (deadline.remaining() == 0) {
                return ETIMEDOUT;
            }
            ::poll(nullptr, 0, 1);
            continue;
        }
        if (errno == EISCONN) {
            return 0;
        }
        if (errno != EINPROGRESS && errno != EINTR && errno != EALREADY) {
            return errno;
        }
        pollfd waiting{descriptor, POLLOUT, 0};
        int const remaining = deadline.remaining();
        int const ready = remaining > 0 ? ::poll(&waiting, 1, remaining) : 0;
        if (ready == 0) {
            return ETIMEDOUT;
        }
        if (ready > 0) {
            int error = 0;
            socklen_t size = sizeof error;
            ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
            return error;
        }
    }
    return 0;
}

} // namespace

std::unique_ptr<Channel> SocketDialer::dial(std::size_t way, Deadline& deadline, std::string& why) const
{
    SocketAddress const& address = addresses_[way];
    int const family = address.protocol().family();
    int const descriptor = ::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    int const error = descriptor < 0 ? errno : connectSocket(descriptor, address, deadline);
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

} // namespace trs
