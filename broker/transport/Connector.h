// Connections to one endpoint.
#pragma once

#include "broker/framing/Message.h"
#include "broker/transport/Connection.h"
#include "broker/transport/Dialer.h"

#include <memory>
#include <optional>
#include <string>

namespace trs {

class Connector {
public:
    explicit Connector(std::unique_ptr<Dialer> dialer) : dialer_(std::move(dialer)) {}

    // A connection whose greetings are exchanged, which ends with the cut, or null and why; `deadline.remaining()`
    // tells whether it was the time.
    std::unique_ptr<Connection> connect(Deadline& deadline, Cut& cut, std::string& why) const;
    Dialer const& dialer() const { return *dialer_; }
    // Nothing, or why what the accepting side has sent, greetingLength() bytes, is no reason to go on.
    static std::optional<std::string> complaint(unsigned char const* greeting, std::size_t length);
    static constexpr std::size_t greatestGreeting = 12 + mostReason;
    static constexpr char const* closedEarly = "the connection was closed before a greeting came";

private:
    static bool greet(Connection& connection, Deadline& deadline, std::string& why);

    std::unique_ptr<Dialer> const dialer_;
};

} // namespace trs
