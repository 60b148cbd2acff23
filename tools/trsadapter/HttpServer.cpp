#include "tools/trsadapter/HttpServer.h"

#include "tools/trsadapter/HttpConnection.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <httplib.h>
#include <string_view>
#include <strings.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace trs::adapter {

namespace {

constexpr int waitingConnections = 1024; // that the system keeps until they are accepted

constexpr std::size_t mostRequests = 1'000'000; // on one connection

// The connection that this thread serves: handlers get to see a request only.
thread_local HttpConnection* served = nullptr;

char const* phrase(int status)
{
    switch (status) {
    case 408:
        return "Request Timeout";
    case 413:
        return "Payload Too Large";
    case 431:
        return "Request Header Fields Too Large";
    default:
        return "Bad Request";
    }
}

bool isMultipart(std::string const& type)
{
    constexpr std::string_view multipart = "multipart/";
    return ::strncasecmp(type.c_str(), multipart.data(), multipart.size()) == 0;
}

void setText(httplib::Response& response, int status, std::string const& text)
{
    response.status = status;
    response.set_content(text + '\n', "text/plain; charset=utf-8");
}

// The response to a request that is not read to its end.
void refuse(httplib::Response& response, int status, std::string const& text)
{
    setText(response, status, text);
    response.set_header("Connection", "close");
    served->closeAfterResponse();
}

// Knows how many connections wait for a thread.
class Workers final : public httplib::TaskQueue {
public:
    explicit Workers(std::atomic<int>& waiting) : waiting_(waiting), threads_(HttpServer::mostConnections) {}

    void enqueue(std::function<void()> task) override
    {
        ++waiting_;
        threads_.enqueue([this, task = std::move(task)] {
            --waiting_;
            task();
        });
    }
    void shutdown() override { threads_.shutdown(); }

private:
    std::atomic<int>& waiting_;
    httplib::ThreadPool threads_;
};

} // namespace

class HttpServer::Server final : public httplib::Server {
public:
    using Handler = HttpServer::Handler; // not httplib's

    explicit Server(Bounds const& bounds) : bounds_(bounds)
    {
        // The address of a server that has just ended can be had again, but not that of one that runs.
        set_socket_options([](socket_t socket) {
            int const yes = 1;
            ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        set_tcp_nodelay(true);
        // What the server says of them; HttpConnection keeps to the time.
        set_keep_alive_timeout(std::chrono::duration_cast<std::chrono::seconds>(bounds.idle).count());
        set_keep_alive_max_count(mostRequests);
        new_task_queue = [this] { return new Workers(waiting_); };
        set_pre_routing_handler([this](auto const& request, auto& response) { return check(request, response); });
        set_expect_100_continue_handler([this](auto const& request, auto& response) {
            return check(request, response) == HandlerResponse::Handled ? response.status : 100;
        });
        set_error_handler([](auto const&, httplib::Response& response) {
            if (int const status = served->refusal(); status != 0 && response.status != status) {
                refuse(response, status, phrase(status));
            } else if (response.body.empty()) {
                refuse(response, response.status, "This is no request that can be answered.");
            }
        });
        set_exception_handler([](auto const&, httplib::Response& response, std::exception_ptr const&) {
            refuse(response, 500, "The request cannot be answered."); // and nothing of what the exception says
        });
        set_default_headers({{"Accept-Ranges", "none"}});
        set_logger([this](auto const&, httplib::Response const& response) { tell(response.status); });
    }
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;
    ~Server() override = default;

    void add(std::string const& method, std::string const& path, Handler handler)
    {
        methods_[path] += (methods_[path].empty() ? "" : ", ") + method;
        if (method == "GET") {
            methods_[path] += ", HEAD";
            Get(path, [handler = std::move(handler)](httplib::Request const& request, httplib::Response& response) {
                answer(handler, request, {}, response);
            });
            return;
        }
        Post(path, [this, handler = std::move(handler)](httplib::Request const& request, httplib::Response& response,
                                                        httplib::ContentReader const& content) {
            std::string body;
            if (read(content, body, response)) {
                answer(handler, request, std::move(body), response);
            }
        });
    }

    std::string start(std::string const& address, int port)
    {
        errno = EADDRNOTAVAIL; // unless the system says otherwise
        port_ = port == 0 ? bind_to_any_port(address) : bind_to_port(address, port) ? port : -1;
        if (port_ < 0 || ::listen(svr_sock_, waitingConnections) != 0) {
            return std::strerror(errno); // NOLINT(concurrency-mt-unsafe): the C library's is thread-safe
        }
        acceptor_ = std::thread([this] {
            listen_after_bind();
            isEnded_ = true;
        });
        return {};
    }

    void end()
    {
        if (!acceptor_.joinable()) {
            return;
        }
        stop_.come();
        while (!is_running() && !isEnded_) {
            std::this_thread::yield(); // until it listens and can be stopped
        }
        stop();
        acceptor_.join();
    }

    int port() const { return port_; }

    std::string help;
    std::function<void(int)> listener;

private:
    static void answer(Handler const& handler, httplib::Request const& request, std::string body,
                       httplib::Response& response)
    {
        HttpServer::Response const made =
            handler({std::move(body), served->address(), request.get_header_value("Cookie")});
        response.status = made.status;
        response.set_content(made.body, made.type);
        for (auto const& [name, value] : made.headers) {
            response.set_header(name, value);
        }
    }

    // Answers what no handler is for, before the body is read.
    HandlerResponse check(httplib::Request const& request, httplib::Response& response) const
    {
        auto const known = methods_.find(request.path);
        std::size_t const length = std::strtoull(request.get_header_value("Content-Length").c_str(), nullptr, 10);
        if (known == methods_.end()) {
            refuse(response, 404, help);
        } else if ((", " + known->second + ',').find(", " + request.method + ',') == std::string::npos) {
            refuse(response, 405, "The methods of this path are " + known->second + '.');
            response.set_header("Allow", known->second);
        } else if (request.method == "POST" && isMultipart(request.get_header_value("Content-Type"))) {
            refuse(response, 415, "A body is one document, not several parts.");
        } else if (length > bounds_.body) {
            refuseBody(response);
        } else {
            return HandlerResponse::Unhandled;
        }
        return HandlerResponse::Handled;
    }

    void refuseBody(httplib::Response& response) const
    {
        refuse(response, 413, "A body has at most " + std::to_string(bounds_.body) + " bytes.");
    }

    // The body of a request, uncompressed. False, with the response made, for one that breaks a bound or off.
    bool read(httplib::ContentReader const& content, std::string& body, httplib::Response& response) const
    {
        bool isTooLong = false;
        bool const isRead = content([&](char const* bytes, std::size_t size) {
            isTooLong = size > bounds_.body - body.size();
            body.append(bytes, isTooLong ? 0 : size);
            return !isTooLong;
        });
        if (isTooLong || served->refusal() == 413) {
            refuseBody(response);
        } else if (served->refusal() != 0) {
            refuse(response, served->refusal(), phrase(served->refusal()));
        } else if (!isRead) {
            refuse(response, response.status == 415 ? 415 : 400, "The body cannot be read.");
        } else {
            return true;
        }
        return false;
    }

    bool process_and_close_socket(socket_t socket) override
    {
        HttpConnection connection(socket, stop_, bounds_);
        served = &connection;
        bool isKept = true;
        std::size_t left = mostRequests;
        while (isKept && !connection.isClosing() && connection.awaitRequest(waiting_)) {
            bool const isLast = --left == 0 || waiting_ > 0; // others want the thread
            bool isClosed = false;
            isKept = process_request(connection, isLast, isClosed, nullptr) && !isLast && !isClosed;
        }
        if (int const status = connection.refusal(); status != 0 && !connection.hasWritten()) {
            connection.httplib::Stream::write(std::string("HTTP/1.1 ") + std::to_string(status) + ' ' + phrase(status) +
                                              "\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
            tell(status);
        }
        served = nullptr;
        connection.finish();
        ::close(socket);
        return true;
    }

    void tell(int status) const
    {
        if (listener) {
            listener(status);
        }
    }

    Bounds const bounds_;
    std::map<std::string, std::string> methods_; // of each path, as the header Allow has them
    std::atomic<int> waiting_ = 0;
    std::atomic<bool> isEnded_ = false;
    Stop stop_;
    int port_ = -1;
    std::thread acceptor_;
};

HttpServer::HttpServer(Bounds const& bounds) : server_(std::make_unique<Server>(bounds)) {}

HttpServer::~HttpServer() { stop(); }

void HttpServer::get(std::string const& path, Handler handler) { server_->add("GET", path, std::move(handler)); }

void HttpServer::post(std::string const& path, Handler handler) { server_->add("POST", path, std::move(handler)); }

void HttpServer::setHelp(std::string const& help) { server_->help = help; }

void HttpServer::setListener(std::function<void(int)> listener) { server_->listener = std::move(listener); }

std::string HttpServer::start(std::string const& address, int port)
{
    std::string const why = server_->start(address, port);
    return why.empty() ? why : "cannot listen on " + address + ", port " + std::to_string(port) + ": " + why;
}

int HttpServer::port() const { return server_->port(); }

void HttpServer::stop() { server_->end(); }

} // namespace trs::adapter
