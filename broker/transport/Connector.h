// Connections to one endpoint.
#pragma once

#include "broker/transport/Connection.h"
#include "broker/transport/Dialer.h"

#include <memory>
#include <string>

namespace trs {

class Connector {
public:
    explicit Connector(std::unique_ptr<Dialer> dialer) : dialer_(std::move(dialer)) {}

    // A connection whose greetings are exchanged, which ends with the cut, or null and why; `deadline.remaining()`
    // tells whether it was the time.
    std::unique_ptr<Connection> connect(Deadline& deadline, Cut& cut, std::string& why) const;

private:
    static bool greet(Connection& connection, Deadline& deadline, std::string& why);

    std::unique_ptr<Dialer> const dialer_;
};

} // namespace trs
