// A client's connection to the HTTP server: bytes within the bounds of time and size.
#pragma once

#include "tools/trsadapter/HttpServer.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <httplib.h>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace trs::adapter {

// When the server is to end: what has begun has a moment left to be read, answered and sent.
class Stop {
public:
    using Time = std::chrono::steady_clock::time_point;

    Stop();
    Stop(Stop const&) = delete;
    Stop& operator=(Stop const&) = delete;
    ~Stop();

    void come();
    // Until then connections go on; the end of time while there is no stop.
    Time end() const { return end_; }
    bool hasCome() const { return end() != Time::max(); }
    // Becomes readable when it comes.
    int descriptor() const { return descriptor_; }

private:
    std::atomic<Time> end_ = Time::max();
    int descriptor_;
};

// For one thread. The socket is the caller's to close.
//
// A request reaches its reader without a header Range, and so is answered as a whole: httplib would take thousands of
// ranges, by recursion, and repeat the response for each.
class HttpConnection final : public httplib::Stream {
public:
    HttpConnection(int socket, Stop const& stop, HttpServer::Bounds const& bounds);

    // Waits for the first byte of a request. False when none comes: the client left or is idle for too long, other
    // connections wait for this one's thread, or the server is to end.
    bool awaitRequest(std::atomic<int> const& waiting);
    // The status that a request which broke a bound is answered with: 408, 413 or 431; 0 for one that did not.
    int refusal() const { return refusal_; }
    // The part of the request that is not read any more makes the connection useless for others.
    void closeAfterResponse() { isClosing_ = true; }
    bool isClosing() const { return isClosing_ || refusal_ != 0; }
    bool hasWritten() const { return hasWritten_; }
    // Ends the connection so that the client gets to read the response, even when it is still sending.
    void finish();
    std::string address() const;

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* bytes, std::size_t size) override;
    ssize_t write(char const* bytes, std::size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_; }

private:
    using Time = Stop::Time;

    bool await(short events, Time end, bool isIdle = false) const;
    bool fill();
    bool readLine();
    bool takeLine();
    ssize_t readBody(char* bytes, std::size_t size);

    int socket_;
    Stop const& stop_;
    HttpServer::Bounds bounds_;
    Time end_; // of the request
    std::array<char, 8192> buffer_;
    std::size_t begin_ = 0; // of what was received and not read yet
    std::size_t received_ = 0;
    std::string line_;          // of the request's head
    std::size_t lineBegin_ = 0; // of what was not read of it yet
    std::size_t headSize_ = 0;  // of what was received of the request
    std::size_t bodySize_ = 0;
    bool isInBody_ = false; // behind line_
    int refusal_ = 0;
    bool isClosing_ = false;
    bool hasWritten_ = false;
};

} // namespace trs::adapter
