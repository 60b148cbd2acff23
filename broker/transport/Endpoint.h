// Where a broker listens.
#pragma once

#include <cstdint>
#include <string>

namespace trs {

// `unix:PATH`, `tcp:HOST:PORT` or `tcp:PORT`, which is 127.0.0.1, or `memory:NAME`, which this process alone reaches. A
// numeric IPv6 host stands in brackets.
struct Endpoint {
    enum class Kind { local, tcp, memory };

    Kind kind = Kind::local;
    std::string path; // of `memory`: the name
    std::string host;
    std::uint16_t port = 0;

    // Empty, with the result in `endpoint`, or what is wrong with the text.
    static std::string parse(std::string const& text, Endpoint& endpoint);
    std::string text() const;
};

} // namespace trs
