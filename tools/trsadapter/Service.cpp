#include "tools/trsadapter/Service.h"

#include "adapter/ZYN_AdapterConstants.h"
#include "adapter/ZYN_OSServices.h"
#include "broker/PrintableText.h"
#include "platform/NmaLogHelper.h"
#include "tools/support/Console.h"

#include <array>
#include <netinet/in.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace trs::adapter {

namespace {

constexpr char const* loopback = "127.0.0.1";

// How much the log has of a document from or to a client without a session, in bytes as they are written.
constexpr std::size_t strangersTextMax = 4096;

// The cookie of the session; empty when the header has none.
std::string sessionIn(std::string const& cookies)
{
    std::string const name = xoh::SESSION_ID + '=';
    for (std::size_t at = 0; (at = cookies.find(name, at)) != std::string::npos; at += name.size()) {
        if (at == 0 || cookies[at - 1] == ' ' || cookies[at - 1] == ';') {
            std::size_t const begin = at + name.size();
            return cookies.substr(begin, cookies.find(';', begin) - begin);
        }
    }
    return {};
}

std::string cookieOf(std::string const& sessionId)
{
    std::string const cookie = xoh::SESSION_ID + '=' + sessionId + "; Path=/; HttpOnly; SameSite=Strict";
    return sessionId.empty() ? cookie + "; Max-Age=0" : cookie;
}

bool isLoopback(std::string const& address) { return address.starts_with("127.") || address == "::1"; }

} // namespace

std::string Service::configuredPlace(std::string& address, int& port)
{
    port = ZYN_OSServices::getBTSOMPort();
    if (port < 1 || port > 65535) {
        return xoh::BTSOM_PORT_FILE + ": " + std::to_string(port) + " is not a port number (1 to 65535)";
    }
    // Without the file the address is one that all units have in their own networks, but not a machine like this.
    address = loopback;
    if (::access(xoh::BTSOM_IP_ADDRESS_FILE.c_str(), F_OK) == 0) {
        ZYN_OSServices::getBTSOMIpAddress(address);
    }
    return {};
}

Service::Service(Options const& options)
    : options_(options), credentials_(options.credentials), sessions_(options.sessionTimeout),
      handler_(credentials_, sessions_, identity_), log_(options.logDirectory, options.logFileSize),
      adapter_({[this](std::string const& address) {
                    identity_.setPublicAddress(address);
                    log_.add("address", {{"applied", address}});
                },
                [this](Adapter::Alarm const& alarm, Adapter::Outcome const& outcome) {
                    metrics_.countAlarm(outcome.failure);
                    log_.add("alarm", {{"type", std::to_string(alarm.type)},
                                       {"state", std::to_string(alarm.state)},
                                       {"outcome", outcome.text}});
                }}),
      server_(options.bounds)
{
}

Service::~Service() { stop(); }

std::string Service::start()
{
    if (std::string why = credentials_.check(); !why.empty()) {
        return why;
    }
    if (std::string why = connect(); !why.empty()) {
        return why;
    }
    if (!isLoopback(options_.address)) {
        NmaLogHelper(4, __FILE__, __func__, __LINE__)
            .message("listening on %s: passwords reach it unencrypted", printable(options_.address).c_str());
    }
    addPaths();
    if (std::string why = server_.start(options_.address, options_.port); !why.empty()) {
        return why;
    }
    bool const isV6 = options_.address.find(':') != std::string::npos;
    tools::say("logging to " + log_.path());
    tools::say("ready on http://" + (isV6 ? '[' + options_.address + ']' : options_.address) + ':' +
               std::to_string(server_.port()) + '/');
    return {};
}

// The name of the log is the unit's, and so is known, or known to be another, only now.
std::string Service::connect()
{
    isUnitReached_ = adapter_.connect();
    if (isUnitReached_) {
        identity_.refresh();
    }
    return isUnitReached_ || !log_.isOpen() ? log_.open(ZYN_OSServices::getRuemLogfileName()) : std::string();
}

void Service::look()
{
    Adapter::Standing const standing = Adapter::standing();
    if (standing == Adapter::Standing::unreachable) {
        if (isUnitReached_.exchange(false)) {
            tools::say("the agent is lost");
        }
    } else if (standing == Adapter::Standing::hasOtherAddress || !isUnitReached_) {
        std::string const formerLog = log_.path();
        if (std::string const why = connect(); !why.empty()) {
            NmaLogHelper(3, __FILE__, __func__, __LINE__).message("%s", why.c_str());
        } else if (log_.path() != formerLog) {
            tools::say("logging to " + log_.path());
        }
    }
}

void Service::stop()
{
    handler_.stop();
    server_.stop();
    log_.close();
}

void Service::addPaths()
{
    server_.setHelp("POST a message to /, or GET /health or /metrics.");
    server_.setListener([this](int status) { metrics_.countResponse(status); });
    server_.post("/", [this](HttpServer::Request const& request) { return take(request); });
    server_.get("/health", [this](HttpServer::Request const&) { return health(); });
    server_.get("/metrics", [this](HttpServer::Request const&) {
        return HttpServer::Response{200, "text/plain; version=0.0.4; charset=utf-8", metrics_.text(state()), {}};
    });
}

HttpServer::Response Service::take(HttpServer::Request const& request)
{
    auto const begin = std::chrono::steady_clock::now();
    MessageHandler::Answer const answer = handler_.handle({request.body, request.address, sessionIn(request.cookies)});
    // Clients without a session must not have the log begin file after file until all is gone that was in it.
    std::size_t const most = answer.user.empty() ? strangersTextMax : options_.bounds.body;
    log_.add("received",
             {{"from", request.address},
              {"user", answer.user},
              {"kind", answer.kind},
              {"result", answer.result},
              {"status", std::to_string(answer.status)}},
             MessageLog::withoutPassword(request.body), most);
    log_.add("sent", {{"to", request.address}}, answer.document, most);
    metrics_.countMessage(answer.kind, answer.result, std::chrono::steady_clock::now() - begin);

    HttpServer::Response response{answer.status, "text/xml; charset=utf-8", answer.document, {}};
    if (answer.sessionId) {
        response.headers.emplace("Set-Cookie", cookieOf(*answer.sessionId));
    }
    return response;
}

Metrics::State Service::state()
{
    return {sessions_.active().has_value(), isUnitReached_, log_.isOpen(), identity_.get()};
}

HttpServer::Response Service::health()
{
    Metrics::State const now = state();
    nlohmann::ordered_json const body{{"status", now.isUnitReached && now.isLogOpen ? "good" : "degraded"},
                                      {"unit", now.isUnitReached ? "reached" : "unreachable"},
                                      {"btsId", now.unit.btsId},
                                      {"publicAddress", now.unit.publicAddress},
                                      {"transportAddress", now.unit.transportAddress},
                                      {"log", now.isLogOpen ? log_.path() : ""},
                                      {"session", now.hasSession}};
    // What the unit says need not be UTF-8.
    return {now.isUnitReached && now.isLogOpen ? 200 : 503,
            "application/json",
            body.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n',
            {}};
}

} // namespace trs::adapter
