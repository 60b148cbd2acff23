#include "bench/support/RawSockets.h"

#include "bench/support/BenchNodeClient.h"
#include "bench/support/SwapBytes.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

[[noreturn]] void die(char const* what)
{
    std::perror(what);
    std::exit(1);
}

struct Address {
    sockaddr_storage storage{};
    socklen_t length = 0;

    explicit Address(std::string const& endpoint)
    {
        if (endpoint.starts_with("unix:")) {
            sockaddr_un local{};
            local.sun_family = AF_UNIX;
            std::snprintf(local.sun_path, sizeof local.sun_path, "%s", endpoint.c_str() + 5);
            set(local);
        } else {
            std::size_t const colon = endpoint.rfind(':');
            sockaddr_in internet{};
            internet.sin_family = AF_INET;
            internet.sin_port = htons(static_cast<std::uint16_t>(std::stoi(endpoint.substr(colon + 1))));
            inet_pton(AF_INET, endpoint.substr(4, colon - 4).c_str(), &internet.sin_addr);
            set(internet);
        }
    }
    sockaddr const* get() const { return reinterpret_cast<sockaddr const*>(&storage); }

private:
    template <class Specific>
    void set(Specific const& specific)
    {
        std::memcpy(&storage, &specific, sizeof specific);
        length = sizeof specific;
    }
};

int openSocket(Address const& address)
{
    int const handle = socket(address.storage.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (handle < 0) {
        die("socket");
    }
    return handle;
}

void sendAtOnce(int handle)
{
    int const yes = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes); // fails on Unix sockets, which have no delay
}

std::size_t bytesOf(raw::Reply reply)
{
    return raw::messageBytes + (reply == raw::Reply::table ? bench::tableBytes : 0);
}

void serveConnection(int handle, raw::Waiting waiting, raw::Reply reply)
{
    unsigned char request[raw::messageBytes];
    std::vector<std::uint16_t> const values = bench::makeFlatTable();
    std::vector<unsigned char> answer(bytesOf(reply));
    while (raw::receiveAll(handle, waiting, request, sizeof request)) {
        if (reply == raw::Reply::table) {
            swapBytes(reinterpret_cast<std::uint16_t*>(answer.data() + raw::messageBytes), values.data(),
                      values.size());
        }
        if (!raw::sendAll(handle, answer.data(), answer.size())) {
            break;
        }
    }
    close(handle);
}

} // namespace

bool raw::sendAll(int handle, unsigned char const* data, std::size_t length)
{
    while (length > 0) {
        ssize_t const sent = send(handle, data, length, MSG_NOSIGNAL);
        if (sent < 0) {
            return false;
        }
        data += sent;
        length -= static_cast<std::size_t>(sent);
    }
    return true;
}

bool raw::receiveAll(int handle, Waiting waiting, unsigned char* data, std::size_t length)
{
    int const flags = waiting == Waiting::yielding ? MSG_DONTWAIT : 0;
    while (length > 0) {
        ssize_t const received = recv(handle, data, length, flags);
        if (received > 0) {
            data += received;
            length -= static_cast<std::size_t>(received);
        } else if (received < 0 && errno == EAGAIN) {
            sched_yield();
        } else {
            return false;
        }
    }
    return true;
}

int raw::open(std::string const& endpoint)
{
    Address const address(endpoint);
    int const handle = openSocket(address);
    if (connect(handle, address.get(), address.length) != 0) {
        die("connect");
    }
    sendAtOnce(handle);
    return handle;
}

void raw::serve(std::string const& endpoint, Waiting waiting, Reply reply)
{
    Address const address(endpoint);
    int const listener = openSocket(address);
    int const yes = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(listener, address.get(), address.length) != 0 || listen(listener, 16) != 0) {
        die("listen");
    }
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        int const handle = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (handle < 0) {
            die("accept");
        }
        sendAtOnce(handle);
        std::thread(serveConnection, handle, waiting, reply).detach();
    }
}

raw::Connection::Connection(std::string const& endpoint, Waiting waiting, Reply reply)
    : socket_(open(endpoint)), waiting_(waiting), received_(bytesOf(reply)),
      table_((received_.size() - messageBytes) / 2)
{
}

raw::Connection::~Connection() { close(socket_); }

void raw::Connection::call()
{
    unsigned char const request[messageBytes]{};
    if (!sendAll(socket_, request, sizeof request) ||
        !receiveAll(socket_, waiting_, received_.data(), received_.size())) {
        die("call");
    }
    swapBytes(table_.data(), reinterpret_cast<std::uint16_t const*>(received_.data() + messageBytes), table_.size());
}

void raw::Connection::callAtOnce(std::size_t count)
{
    std::vector<unsigned char> const requests(count * messageBytes);
    bool isDone = sendAll(socket_, requests.data(), requests.size());
    for (std::size_t i = 0; i < count && isDone; ++i) {
        isDone = receiveAll(socket_, waiting_, received_.data(), received_.size());
    }
    if (!isDone) {
        die("calls");
    }
}
