#include "broker/transport/Connector.h"

#include "broker/framing/Message.h"
#include "platform/NmaLogHelper.h"

namespace trs {

bool Connector::greet(Connection& connection, Deadline& deadline, std::string& why)
{
    Greeting greeting = makeGreeting();
    if (connection.send(greeting.data(), greeting.size(), deadline) == Connection::Sent::all) {
        switch (connection.receiveBytes(greeting.data(), greeting.size(), deadline)) {
        case Connection::Received::message:
            switch (checkGreeting(greeting)) {
            case GreetingCheck::good:
                return true;
            case GreetingCheck::full:
                why = "the server is full";
                return false;
            case GreetingCheck::otherVersion:
                why = "the broker there speaks another version";
                return false;
            case GreetingCheck::foreign:
                why = "what answers there is no broker";
                return false;
            }
            break;
        case Connection::Received::timedOut:
            why = LogMakeString("no greeting within %d ms", deadline.duration());
            return false;
        default:
            break;
        }
    }
    why = "the connection was closed before a greeting came";
    return false;
}

std::unique_ptr<Connection> Connector::connect(Deadline& deadline, Cut& cut, std::string& why) const
{
    deadline.startWaiting();
    for (std::size_t way = 0; way < dialer_->ways(); ++way) {
        if (std::unique_ptr<Channel> channel = dialer_->dial(way, deadline, cut, why)) {
            auto connection = std::make_unique<Connection>(std::move(channel), &cut);
            if (greet(*connection, deadline, why)) {
                return connection;
            }
        } else {
            why.insert(0, "no connection: ");
        }
        if (deadline.remaining() == 0) {
            break;
        }
    }
    return nullptr;
}

} // namespace trs
