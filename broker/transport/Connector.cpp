#include "broker/transport/Connector.h"

#include "broker/framing/Message.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>
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

int Connector::openSocket(SocketAddress const& address, Deadline const& deadline, std::string& why)
{
    int const family = address.protocol().family();
    int const descriptor = ::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    int const error = descriptor < 0 ? errno : connectSocket(descriptor, address, deadline);
    if (error != 0) {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        why = "no connection: " + systemErrorText(error);
        return -1;
    }
    configureSocket(descriptor, family);
    return descriptor;
}

bool Connector::greet(Connection& connection, Deadline& deadline, std::string& why)
{
    Greeting greeting = makeGreeting();
    if (connection.send(greeting.data(), greeting.size(), deadline) == Connection::Sent::all) {
        switch (connection.receiveBytes(greeting.data(), greeting.size(), deadline)) {
        case Connection::Received::message:
            switch (checkGreeting(greeting)) {
            case GreetingCheck::good:
                return true;
            case GreetingCheck::otherVersion:
                why = "the broker there speaks another version";
                return false;
            case GreetingCheck::foreign:
                why = "what answers there is no broker";
                return false;
            }
            break;
        case Connection::Received::timedOut:
            why = LogMakeString("no greeting within %d ms", deadline.duration());
            return false;
        default:
            break;
        }
    }
    why = "the connection was closed before a greeting came";
    return false;
}

std::unique_ptr<Connection> Connector::connect(Deadline& deadline, std::string& why) const
{
    deadline.startWaiting();
    for (SocketAddress const& address : addresses_) {
        int const descriptor = openSocket(address, deadline, why);
        if (descriptor >= 0) {
            auto connection = std::make_unique<Connection>(descriptor);
            if (greet(*connection, deadline, why)) {
                return connection;
            }
        }
        if (deadline.remaining() == 0) {
            break;
        }
    }
    return nullptr;
}

} // namespace trs
