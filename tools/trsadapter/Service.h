// The site management adapter as a service: an HTTP server, its sessions, log and metrics around an Adapter.
#pragma once

#include "tools/trsadapter/Adapter.h"
#include "tools/trsadapter/Credentials.h"
#include "tools/trsadapter/HttpServer.h"
#include "tools/trsadapter/Identity.h"
#include "tools/trsadapter/MessageHandler.h"
#include "tools/trsadapter/MessageLog.h"
#include "tools/trsadapter/Metrics.h"
#include "tools/trsadapter/Sessions.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>

namespace trs::adapter {

class Service {
public:
    struct Options {
        std::string address; // to listen on, numeric
        int port = 0;        // 0 lets the system choose
        std::string credentials;
        std::string logDirectory;
        std::size_t logFileSize = 0; // bytes before compression
        std::chrono::seconds sessionTimeout{};
        HttpServer::Bounds bounds;
    };

    // Where the site configuration has the service listen: on the BTS O&M port of the loopback address, unless a
    // configuration file names another. Empty, or what is wrong with the configuration.
    static std::string configuredPlace(std::string& address, int& port);

    explicit Service(Options const& options);
    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;
    ~Service();

    // Connects to the unit, which need not be there, begins the log, and serves. Empty, or why it cannot.
    std::string start();
    // Looks after the unit; to be called now and then. Connects again when it was away.
    void look();
    // Answers what has been asked, and completes the log.
    void stop();

    Adapter& adapter() { return adapter_; }
    Sessions& sessions() { return sessions_; }

private:
    std::string connect();
    void addPaths();
    HttpServer::Response take(HttpServer::Request const& request);
    HttpServer::Response health();
    Metrics::State state();

    Options const options_;
    Credentials const credentials_;
    Sessions sessions_;
    Identity identity_;
    MessageHandler handler_;
    MessageLog log_;
    Metrics metrics_;
    std::atomic<bool> isUnitReached_ = false;
    Adapter adapter_;
    HttpServer server_;
};

} // namespace trs::adapter
