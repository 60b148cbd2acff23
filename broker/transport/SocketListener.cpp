#include "broker/transport/SocketListener.h"

#include "broker/transport/SocketChannel.h"
#include "platform/NmaLogHelper.h"

#include <asio/ip/tcp.hpp>

#include <cerrno>
#include <chrono>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace trs {

namespace {

constexpr int queueLength = 4096; // as many as may come at once; the system has a limit of its own
constexpr auto exhaustionPause = std::chrono::milliseconds(100);

std::uint16_t portOf(SocketAddress const& address)
{
    sockaddr_storage storage{};
    std::memcpy(&storage, address.data(), std::min(sizeof storage, address.size()));
    if (storage.ss_family == AF_INET6) {
        sockaddr_in6 v6{};
        std::memcpy(&v6, &storage, sizeof v6);
        return ntohs(v6.sin6_port);
    }
    sockaddr_in v4{};
    std::memcpy(&v4, &storage, sizeof v4);
    return ntohs(v4.sin_port);
}

} // namespace

SocketListener::SocketListener(asio::io_context& context, Endpoint endpoint)
    : endpoint_(std::move(endpoint)), acceptor_(context), pause_(context)
{
}

SocketListener::~SocketListener()
{
    struct stat present {};
    if (hasSocketFile_ && ::lstat(endpoint_.path.c_str(), &present) == 0 && present.st_ino == socketFile_.st_ino &&
        present.st_dev == socketFile_.st_dev) {
        ::unlink(endpoint_.path.c_str());
    }
}

std::string SocketListener::failure(asio::error_code const& error) const
{
    return LogMakeString("endpoint '%s' cannot be served: %s", endpoint_.text().c_str(), error.message().c_str());
}

std::string SocketListener::open()
{
    std::vector<SocketAddress> addresses;
    auto& context = static_cast<asio::io_context&>(acceptor_.get_executor().context());
    if (std::string why = resolve(context, endpoint_, addresses); !why.empty()) {
        return why;
    }
    SocketAddress const& address = addresses.front();
    asio::error_code error;
    acceptor_.open(address.protocol(), error);
    if (error) {
        return failure(error);
    }
    return endpoint_.kind == Endpoint::Kind::local ? openLocal(address) : openTcp(address);
}

// A socket file that nobody listens on was left by a process that ended without removing it.
bool SocketListener::removeStaleSocket(SocketAddress const& address, std::string& why) const
{
    char const* const path = endpoint_.path.c_str();
    struct stat present {};
    if (::lstat(path, &present) == 0 && !S_ISSOCK(present.st_mode)) {
        why = LogMakeString("endpoint '%s' cannot be served: there is a file that is no socket",
                            endpoint_.text().c_str());
        return false;
    }
    int const probe = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    int error = probe < 0 ? errno : 0;
    if (probe >= 0) {
        error = ::connect(probe, address.data(), static_cast<socklen_t>(address.size())) != 0 ? errno : 0;
        ::close(probe);
    }
    if (error != ECONNREFUSED && error != ENOENT) {
        bool const isAlive = error == 0 || error == EAGAIN; // whose queue is full
        why = LogMakeString("endpoint '%s' cannot be served: %s", endpoint_.text().c_str(),
                            isAlive ? "a live process serves there"
                                    : ("there is a socket: " + systemErrorText(error)).c_str());
        return false;
    }
    ::unlink(path);
    return true;
}

std::string SocketListener::openLocal(SocketAddress const& address)
{
    // The file gets the socket's mode when it is made: nobody else can connect in between.
    ::fchmod(acceptor_.native_handle(), S_IRUSR | S_IWUSR);
    asio::error_code error;
    acceptor_.bind(address, error);
    if (error == asio::error::address_in_use) {
        std::string why;
        if (!removeStaleSocket(address, why)) {
            return why;
        }
        acceptor_.bind(address, error);
    }
    if (!error) {
        hasSocketFile_ = ::lstat(endpoint_.path.c_str(), &socketFile_) == 0;
        acceptor_.listen(queueLength, error);
    }
    return error ? failure(error) : std::string();
}

std::string SocketListener::openTcp(SocketAddress const& address)
{
    asio::error_code error;
    acceptor_.set_option(Acceptor::reuse_address(true), error);
    acceptor_.bind(address, error);
    if (!error) {
        acceptor_.listen(queueLength, error);
    }
    if (error) {
        return failure(error);
    }
    SocketAddress const bound = acceptor_.local_endpoint(error);
    if (!error) {
        endpoint_.port = portOf(bound);
    }
    return {};
}

void SocketListener::start(Admit admit)
{
    admit_ = std::move(admit);
    accept();
}

void SocketListener::accept()
{
    acceptor_.async_accept([this](asio::error_code accepting, asio::generic::stream_protocol::socket socket) {
        if (accepting == asio::error::operation_aborted) {
            return;
        }
        if (accepting == asio::error::no_descriptors || accepting.value() == ENFILE || accepting.value() == ENOMEM ||
            accepting.value() == ENOBUFS) {
            // The connection stays in the queue: accepting again at once would only spin.
            if (!isExhausted_) {
                LogDispatch(3, "connections to " + endpoint_.text() + " must wait: " + accepting.message());
            }
            isExhausted_ = true;
            pause_.expires_after(exhaustionPause);
            pause_.async_wait([this](asio::error_code waiting) {
                if (!waiting) {
                    accept();
                }
            });
            return;
        }
        if (!accepting) {
            isExhausted_ = false;
            // Transfers run on the native socket. Asio's reactor would wake this thread for each of them.
            asio::error_code releasing;
            int const descriptor = socket.release(releasing);
            if (!releasing) {
                configureSocket(descriptor, endpoint_.kind == Endpoint::Kind::local ? AF_UNIX : AF_INET);
                admit_(std::make_unique<SocketChannel>(descriptor));
            }
        }
        accept();
    });
}

} // namespace trs
