// The limits of calling another process: the same bytes over the same sockets with nothing around the system calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace raw {

// A request, and a reply that carries one number. About what such messages take with any protocol.
inline constexpr std::size_t messageBytes = 40;

// What a side does until bytes arrive.
enum class Waiting {
    blocked, // sleeps in recv()
    yielding // asks again and again, and lets others run in between
};

enum class Reply {
    number, // messageBytes
    table   // messageBytes and the 16-bit values of bench::makeTable(), swapped into network order
};

// Serves every connection to `endpoint` (unix:PATH or tcp:HOST:PORT) by a thread of its own. Does not return.
[[noreturn]] void serve(std::string const& endpoint, Waiting waiting, Reply reply);

// A connected socket, and transfers of all the bytes over it; false when it has ended.
int open(std::string const& endpoint);
bool sendAll(int handle, unsigned char const* data, std::size_t length);
bool receiveAll(int handle, Waiting waiting, unsigned char* data, std::size_t length);

// A client's connection.
class Connection {
public:
    Connection(std::string const& endpoint, Waiting waiting, Reply reply);
    Connection(Connection const&) = delete;
    Connection& operator=(Connection const&) = delete;
    ~Connection();

    // One request and its reply. A table is swapped into host order.
    void call();
    // That many requests in one piece, and their replies, each received by itself. The server answers one by one.
    void callAtOnce(std::size_t count);
    // The values of the last table.
    std::vector<std::uint16_t> const& table() const { return table_; }

private:
    int socket_;
    Waiting waiting_;
    std::vector<unsigned char> received_;
    std::vector<std::uint16_t> table_;
};

} // namespace raw
