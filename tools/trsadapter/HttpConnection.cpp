#include "tools/trsadapter/HttpConnection.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace trs::adapter {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// For all that has begun when the server is to end.
constexpr milliseconds grace{800};
// For a client to read its response while it is still sending.
constexpr milliseconds lingerTime{1000};

// How often an idle connection looks whether others wait for its thread.
constexpr milliseconds lookAround{100};

// What a body takes on its way may be more than what it is: chunked, it has its chunks' sizes in it.
constexpr std::size_t sentBodyMax(std::size_t bodyMax) { return 2 * bodyMax + 4096; }

// Whether the line is the header of that name, which is in lower case.
bool isHeader(std::string_view line, std::string_view name)
{
    return line.size() > name.size() && line[name.size()] == ':' &&
           std::equal(name.begin(), name.end(), line.begin(), [](char wanted, char has) {
               return has == wanted || (has >= 'A' && has <= 'Z' && has - 'A' + 'a' == wanted);
           });
}

void addressOf(sockaddr_storage const& from, std::string& ip, int& port)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (from.ss_family == AF_INET) {
        auto const& address = reinterpret_cast<sockaddr_in const&>(from);
        ::inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
        port = ntohs(address.sin_port);
    } else if (from.ss_family == AF_INET6) {
        auto const& address = reinterpret_cast<sockaddr_in6 const&>(from);
        ::inet_ntop(AF_INET6, &address.sin6_addr, text.data(), text.size());
        port = ntohs(address.sin6_port);
    }
    ip = text.data();
}

} // namespace

Stop::Stop() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Stop::~Stop() { ::close(descriptor_); }

void Stop::come()
{
    end_ = steady_clock::now() + grace;
    ::eventfd_write(descriptor_, 1);
}

HttpConnection::HttpConnection(int socket, Stop const& stop, HttpServer::Bounds const& bounds)
    : socket_(socket), stop_(stop), bounds_(bounds)
{
}

bool HttpConnection::awaitRequest(std::atomic<int> const& waiting)
{
    Time const idleEnd = steady_clock::now() + bounds_.idle;
    while (begin_ == received_ && !await(POLLIN, std::min(idleEnd, steady_clock::now() + lookAround), true)) {
        if (stop_.hasCome() || waiting > 0 || steady_clock::now() >= idleEnd) {
            return false;
        }
    }
    end_ = steady_clock::now() + bounds_.request;
    line_.clear();
    lineBegin_ = 0;
    headSize_ = 0;
    bodySize_ = 0;
    isInBody_ = false;
    hasWritten_ = false;
    return begin_ != received_ || fill();
}

// Whether the socket is ready in time: until `end`, or until the stop's end; an idle one at the stop at once.
bool HttpConnection::await(short events, Time end, bool isIdle) const
{
    for (;;) {
        bool const isStopped = stop_.hasCome();
        auto const left = std::chrono::ceil<milliseconds>(std::min(end, stop_.end()) - steady_clock::now());
        bool const isOver = left.count() <= 0 || (isStopped && isIdle);
        std::array<pollfd, 2> waiting{{{socket_, events, 0}, {isStopped ? -1 : stop_.descriptor(), POLLIN, 0}}};
        ::poll(waiting.data(), waiting.size(), isOver ? 0 : static_cast<int>(left.count()));
        if (waiting[0].revents != 0 || isOver) {
            return waiting[0].revents != 0;
        }
    }
}

// Receives more, in time. False at the end of the connection.
bool HttpConnection::fill()
{
    if (!await(POLLIN, end_)) {
        refusal_ = 408;
        return false;
    }
    ssize_t const count = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
    begin_ = 0;
    received_ = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    return received_ != 0;
}

ssize_t HttpConnection::read(char* bytes, std::size_t size)
{
    if (refusal_ != 0) {
        return -1;
    }
    if (lineBegin_ == line_.size()) {
        if (isInBody_) {
            return readBody(bytes, size);
        }
        if (!readLine()) {
            return refusal_ != 0 ? -1 : 0;
        }
    }
    std::size_t const count = line_.copy(bytes, size, lineBegin_);
    lineBegin_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t HttpConnection::readBody(char* bytes, std::size_t size)
{
    if (begin_ == received_ && !fill()) {
        return refusal_ != 0 ? -1 : 0;
    }
    std::size_t const count = std::min(size, received_ - begin_);
    std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_), count, bytes);
    begin_ += count;
    bodySize_ += count;
    if (bodySize_ > sentBodyMax(bounds_.body)) {
        refusal_ = 413;
        return -1;
    }
    return static_cast<ssize_t>(count);
}

// The next line of the head that is for the reader. False at the end of the connection and for a bound that it breaks.
bool HttpConnection::readLine()
{
    bool isFirst = headSize_ == 0;
    do {
        if (!takeLine()) {
            return false;
        }
    } while (!std::exchange(isFirst, false) && isHeader(line_, "range"));
    return true;
}

// The next line, or what comes of it before the connection ends. The head ends with an empty one.
bool HttpConnection::takeLine()
{
    bool const isFirst = headSize_ == 0;
    line_.clear();
    lineBegin_ = 0;
    while (!line_.ends_with('\n')) {
        if (begin_ == received_ && !fill()) {
            return refusal_ == 0 && !line_.empty();
        }
        std::string_view const came(buffer_.data() + begin_, received_ - begin_);
        std::string_view const taken = came.substr(0, std::min(came.find('\n'), came.size() - 1) + 1);
        line_ += taken;
        begin_ += taken.size();
        headSize_ += taken.size();
        if (headSize_ > HttpServer::headSizeMax) {
            refusal_ = 431;
            return false;
        }
    }
    isInBody_ = !isFirst && (line_ == "\r\n" || line_ == "\n");
    return true;
}

ssize_t HttpConnection::write(char const* bytes, std::size_t size)
{
    hasWritten_ = true;
    end_ = steady_clock::now() + bounds_.request; // now it is the response's
    for (std::size_t sent = 0; sent < size;) {
        ssize_t const count = ::send(socket_, bytes + sent, size - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
        } else if ((errno != EAGAIN && errno != EINTR) || !await(POLLOUT, end_)) {
            isClosing_ = true;
            return -1;
        }
    }
    return static_cast<ssize_t>(size);
}

void HttpConnection::finish()
{
    ::shutdown(socket_, SHUT_WR);
    // Closing a socket with unread bytes would take the response back.
    Time const end = steady_clock::now() + lingerTime;
    while (isClosing() && await(POLLIN, end) && ::recv(socket_, buffer_.data(), buffer_.size(), 0) > 0) {
    }
}

std::string HttpConnection::address() const
{
    std::string ip;
    int port = 0;
    get_remote_ip_and_port(ip, port);
    return ip;
}

bool HttpConnection::is_readable() const
{
    return lineBegin_ != line_.size() || begin_ != received_ || await(POLLIN, end_);
}

bool HttpConnection::is_writable() const { return await(POLLOUT, end_); }

void HttpConnection::get_remote_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    ::getpeername(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    addressOf(address, ip, port);
}

void HttpConnection::get_local_ip_and_port(std::string& ip, int& port) const
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    addressOf(address, ip, port);
}

} // namespace trs::adapter
