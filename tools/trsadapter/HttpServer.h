// An HTTP/1.1 server for a few paths, which bounds what a client may take.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace trs::adapter {

class HttpServer {
public:
    struct Bounds {
        std::size_t body = std::size_t{1} << 20;   // bytes, before and after decompression
        std::chrono::milliseconds request{10'000}; // from its first byte to its last, and the same for the response
        std::chrono::milliseconds idle{30'000};    // between a connection's requests
    };
    // Bytes of a request's first line and headers together.
    static constexpr std::size_t headSizeMax = std::size_t{32} << 10;
    // Connections that are served at once; others wait for one of them to end or to fall idle.
    static constexpr std::size_t mostConnections = 64;

    struct Request {
        std::string body;
        std::string address; // of the client, without its port
        std::string cookies; // the header, empty without
    };
    struct Response {
        int status = 200;
        std::string type = "text/plain; charset=utf-8";
        std::string body;
        std::multimap<std::string, std::string> headers;
    };
    // Is called on a thread for each connection, several at once.
    using Handler = std::function<Response(Request const&)>;

    explicit HttpServer(Bounds const& bounds);
    HttpServer(HttpServer const&) = delete;
    HttpServer& operator=(HttpServer const&) = delete;
    // Stops.
    ~HttpServer();

    // Only before start(). What is asked of other paths is answered with 404 and `help`, other methods with 405.
    void get(std::string const& path, Handler handler);
    void post(std::string const& path, Handler handler);
    void setHelp(std::string const& help);
    // Is called with the status of every response.
    void setListener(std::function<void(int status)> listener);

    // Listens, and serves on threads of its own. `address` is a numeric one, IPv4 or IPv6; port 0 lets the system
    // choose. Empty, or why it cannot.
    std::string start(std::string const& address, int port);
    int port() const;
    // Ends listening and idle connections, gives requests that have begun less than a second to be answered, and waits
    // for that.
    void stop();

private:
    class Server;
    std::unique_ptr<Server> server_;
};

} // namespace trs::adapter
