#include "broker/framing/Message.h"

#include "rmi/ByteOrder.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <algorithm>

namespace trs {

namespace {

constexpr std::uint16_t version = 1;
constexpr std::size_t addressSize = 16;
constexpr std::size_t refusalHeadSize = std::tuple_size_v<Greeting> + 4;

// Values of a greeting's last byte.
constexpr unsigned char isFull = 1;
constexpr unsigned char isRefusal = 2;

Greeting makeGreeting(unsigned char last) { return {'T', 'O', 'I', 'P', version >> 8, version & 0xff, 0, last}; }

bool isGreeting(unsigned char const* bytes, Greeting const& greeting)
{
    return std::equal(greeting.begin(), greeting.end(), bytes);
}

bool isDetailKnown(MessageKind kind, std::uint8_t detail)
{
    switch (kind) {
    case MessageKind::request:
    case MessageKind::subscribe:
        return detail <= 1;
    case MessageKind::reply:
        return detail <= static_cast<std::uint8_t>(ReplyStatus::busy);
    case MessageKind::locateReply:
    case MessageKind::subscriptionReply:
        return detail <= static_cast<std::uint8_t>(ReplyStatus::noSuchObject);
    case MessageKind::locate:
    case MessageKind::unsubscribe:
    case MessageKind::notification:
        return detail == 0;
    }
    return false; // no kind at all
}

bool isBodyAllowed(MessageKind kind, std::uint8_t detail)
{
    switch (kind) {
    case MessageKind::reply:
        return detail == static_cast<std::uint8_t>(ReplyStatus::done);
    case MessageKind::locateReply:
    case MessageKind::subscriptionReply:
        return false;
    default:
        return true;
    }
}

} // namespace

Greeting makeGreeting() { return makeGreeting(0); }

Greeting makeFullGreeting() { return makeGreeting(isFull); }

void appendRefusal(TipprmiStream& greeting, std::string_view why)
{
    why = why.substr(0, mostReason);
    Greeting const begin = makeGreeting(isRefusal);
    unsigned char* const place = greeting.extend(refusalHeadSize + why.size());
    std::copy(begin.begin(), begin.end(), place);
    wire::store(place + begin.size(), static_cast<std::uint32_t>(why.size()));
    std::copy(why.begin(), why.end(), place + refusalHeadSize);
}

std::size_t greetingLength(unsigned char const* bytes, std::size_t count)
{
    if (count < std::tuple_size_v<Greeting> || !isGreeting(bytes, makeGreeting(isRefusal))) {
        return std::tuple_size_v<Greeting>;
    }
    std::size_t const reason =
        count < refusalHeadSize ? 0 : wire::load<std::uint32_t>(bytes + std::tuple_size_v<Greeting>);
    return reason <= mostReason ? refusalHeadSize + reason : std::tuple_size_v<Greeting>;
}

GreetingCheck checkGreeting(unsigned char const* bytes, std::size_t length, std::string_view* why)
{
    if (isGreeting(bytes, makeGreeting())) {
        return GreetingCheck::good;
    }
    if (isGreeting(bytes, makeFullGreeting())) {
        return GreetingCheck::full;
    }
    if (isGreeting(bytes, makeGreeting(isRefusal))) {
        if (length < refusalHeadSize || greetingLength(bytes, length) != length) {
            return GreetingCheck::foreign;
        }
        if (why != nullptr) {
            *why = {reinterpret_cast<char const*>(bytes) + refusalHeadSize, length - refusalHeadSize};
        }
        return GreetingCheck::refusal;
    }
    Greeting const own = makeGreeting();
    return std::equal(own.begin(), own.begin() + 4, bytes) ? GreetingCheck::otherVersion : GreetingCheck::foreign;
}

void beginMessage(TipprmiStream& message, MessageKind kind, std::uint8_t detail)
{
    unsigned char* const place = message.extend(messageHeaderSize);
    std::memset(place, 0, messageHeaderSize);
    place[4] = static_cast<unsigned char>(kind);
    place[5] = detail;
}

void beginAddressed(TipprmiStream& message, MessageKind kind, std::uint8_t detail, TipprmiOID const& oid,
                    unsigned long classId, unsigned long opIndex)
{
    beginMessage(message, kind, detail);
    std::string const& id = oid.getIdString();
    unsigned char* const place = message.extend(addressSize + id.size());
    wire::store(place, static_cast<std::uint32_t>(classId));
    wire::store(place + 4, static_cast<std::uint32_t>(opIndex));
    wire::store(place + 8, static_cast<std::uint32_t>(oid.getNamespace().value()));
    wire::store(place + 12, static_cast<std::uint32_t>(id.size()));
    std::memcpy(place + addressSize, id.data(), id.size());
}

void appendParameters(TipprmiStream& message, TipprmiSequence<TipprmiAny> const& parameters)
{
    wire::store(message.extend(4), static_cast<std::uint32_t>(parameters.getLength()));
    for (TipprmiAny const& value : parameters) {
        unsigned char* const place = message.extend(4 + value.size());
        wire::store(place, static_cast<std::uint32_t>(value.size()));
        std::memcpy(place + 4, value.data(), value.size());
    }
}

bool finishMessage(TipprmiStream& message, std::uint32_t number)
{
    if (message.size() > TIPPRMI_MAX_MESSAGE) {
        return false;
    }
    wire::store(message.data(), static_cast<std::uint32_t>(message.size() - 4));
    wire::store(message.data() + 8, number);
    return true;
}

void reduceReply(TipprmiStream& reply, ReplyStatus status)
{
    reply.truncate(messageHeaderSize);
    reply.data()[5] = static_cast<unsigned char>(status);
}

std::size_t messageLength(unsigned char const* bytes)
{
    auto const following = wire::load<std::uint32_t>(bytes);
    return following >= messageHeaderSize - 4 && following <= TIPPRMI_MAX_MESSAGE - 4 ? following + std::size_t{4} : 0;
}

bool readHeader(TipprmiStream& message, MessageHeader& header)
{
    message.rewind();
    unsigned char const* const place = message.take(messageHeaderSize);
    if (place == nullptr) {
        return false;
    }
    header.kind = static_cast<MessageKind>(place[4]);
    header.detail = place[5];
    header.number = wire::load<std::uint32_t>(place + 8);
    return messageLength(place) == message.size() && wire::load<std::uint16_t>(place + 6) == 0 &&
           isDetailKnown(header.kind, header.detail) &&
           (message.available() == 0 || isBodyAllowed(header.kind, header.detail));
}

bool readAddress(TipprmiStream& message, ObjectAddress& address)
{
    unsigned char const* const place = message.take(addressSize);
    if (place == nullptr) {
        return false;
    }
    address.classId = wire::load<std::uint32_t>(place);
    address.opIndex = wire::load<std::uint32_t>(place + 4);
    address.space = wire::load<std::uint32_t>(place + 8);
    auto const length = wire::load<std::uint32_t>(place + 12);
    unsigned char const* const id = message.take(length);
    if (id == nullptr) {
        return false;
    }
    address.id = std::string_view(reinterpret_cast<char const*>(id), length);
    return true;
}

bool readParameters(TipprmiStream& message, TipprmiSequence<TipprmiAny>& parameters)
{
    unsigned char const* const count = message.take(4);
    if (count == nullptr) {
        return false;
    }
    for (auto left = wire::load<std::uint32_t>(count); left > 0; --left) {
        unsigned char const* const length = message.take(4);
        unsigned char const* const bytes =
            length != nullptr ? message.take(wire::load<std::uint32_t>(length)) : nullptr;
        if (bytes == nullptr) {
            return false;
        }
        TipprmiAny value;
        value.marshall(bytes, static_cast<int>(wire::load<std::uint32_t>(length)));
        parameters.push_back(value);
    }
    return message.available() == 0;
}

bool readPreparedRequest(TipprmiStream& request, ObjectAddress& address)
{
    request.rewind();
    unsigned char const* const place = request.take(messageHeaderSize);
    return place != nullptr && place[4] == static_cast<unsigned char>(MessageKind::request) &&
           readAddress(request, address);
}

} // namespace trs
