#include "broker/transport/Connector.h"

#include "broker/PrintableText.h"
#include "platform/NmaLogHelper.h"

#include <array>

namespace trs {

bool Connector::greet(Connection& connection, Deadline& deadline, std::string& why)
{
    Greeting const own = makeGreeting();
    // Who refuses need not wait for it: what has come from there tells why it is not taken.
    connection.send(own.data(), own.size(), deadline);
    std::array<unsigned char, greatestGreeting> greeting{};
    std::size_t length = 0;
    for (std::size_t known = 0; (known = greetingLength(greeting.data(), length)) > length; length = known) {
        switch (connection.receiveBytes(greeting.data() + length, known - length, deadline)) {
        case Connection::Received::message:
            break;
        case Connection::Received::timedOut:
            why = LogMakeString("no greeting within %d ms", deadline.duration());
            return false;
        default:
            why = closedEarly;
            return false;
        }
    }
    std::optional<std::string> complaint = Connector::complaint(greeting.data(), length);
    if (!complaint) {
        return true;
    }
    why = *std::move(complaint);
    return false;
}

std::optional<std::string> Connector::complaint(unsigned char const* greeting, std::size_t length)
{
    std::string_view reason;
    switch (checkGreeting(greeting, length, &reason)) {
    case GreetingCheck::full:
        return "the server is full";
    case GreetingCheck::refusal:
        return escaped(reason);
    case GreetingCheck::otherVersion:
        return "the broker there speaks another version";
    case GreetingCheck::foreign:
        return "what answers there is no broker";
    case GreetingCheck::good:
        break;
    }
    return std::nullopt;
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
