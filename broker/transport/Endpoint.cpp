#include "broker/transport/Endpoint.h"

#include "platform/NmaLogHelper.h"

#include <charconv>
#include <string_view>
#include <sys/un.h>

namespace trs {

namespace {

constexpr std::size_t longestPath = sizeof(sockaddr_un::sun_path) - 1;

std::string parsePort(std::string_view digits, std::string const& text, std::uint16_t& port)
{
    unsigned value = 0;
    auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size() || value > 65535) {
        return LogMakeString("endpoint '%s': '%s' is not a port number (0 to 65535)", text.c_str(),
                             std::string(digits).c_str());
    }
    port = static_cast<std::uint16_t>(value);
    return {};
}

} // namespace

std::string Endpoint::parse(std::string const& text, Endpoint& endpoint)
{
    std::string_view rest = text;
    if (rest.starts_with("unix:")) {
        rest.remove_prefix(5);
        if (rest.empty()) {
            return LogMakeString("endpoint '%s' names no path", text.c_str());
        }
        if (rest.find('\0') != std::string_view::npos) {
            return LogMakeString("the path of endpoint '%s' contains a zero byte", text.c_str());
        }
        if (rest.size() > longestPath) {
            return LogMakeString("the path of endpoint '%s' has %zu bytes; a socket's has %zu at most", text.c_str(),
                                 rest.size(), longestPath);
        }
        endpoint = {Kind::local, std::string(rest), {}, 0};
        return {};
    }
    if (rest.starts_with("memory:")) {
        rest.remove_prefix(7);
        if (rest.empty()) {
            return LogMakeString("endpoint '%s' has no name", text.c_str());
        }
        endpoint = {Kind::memory, std::string(rest), {}, 0};
        return {};
    }
    if (!rest.starts_with("tcp:")) {
        return LogMakeString("endpoint '%s' is none of unix:PATH, tcp:PORT, tcp:HOST:PORT and memory:NAME",
                             text.c_str());
    }
    rest.remove_prefix(4);
    Endpoint parsed{Kind::tcp, {}, "127.0.0.1", 0};
    std::size_t const colon = rest.rfind(':');
    if (colon != std::string_view::npos) {
        std::string_view host = rest.substr(0, colon);
        if (host.starts_with('[') && host.ends_with(']')) {
            host = host.substr(1, host.size() - 2);
        } else if (host.find(':') != std::string_view::npos) {
            return LogMakeString("endpoint '%s': the host '%s' contains a colon; a numeric IPv6 address stands in "
                                 "brackets",
                                 text.c_str(), std::string(host).c_str());
        }
        if (host.empty() || host.find('\0') != std::string_view::npos) {
            return LogMakeString("endpoint '%s' names no host before its port", text.c_str());
        }
        parsed.host = host;
        rest.remove_prefix(colon + 1);
    }
    if (std::string error = parsePort(rest, text, parsed.port); !error.empty()) {
        return error;
    }
    endpoint = parsed;
    return {};
}

std::string Endpoint::text() const
{
    if (kind == Kind::local) {
        return "unix:" + path;
    }
    if (kind == Kind::memory) {
        return "memory:" + path;
    }
    bool const isV6 = host.find(':') != std::string::npos;
    return "tcp:" + (isV6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

} // namespace trs
