#include "tools/traffic/Conversation.h"

#include "catalogue/ConstantNames.h"
#include "catalogue/MessageText.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::traffic {

namespace {

using catalogue::Value;

constexpr std::size_t mostOpen = 10'000; // requests that wait for an answer

std::string hexadecimal(std::string_view bytes)
{
    std::string text;
    for (char const each : bytes) {
        text += fmt::format("{:02x}", static_cast<unsigned char>(each));
    }
    return text;
}

std::string_view textOf(TipprmiStream const& message)
{
    return {reinterpret_cast<char const*>(message.data()), message.size()};
}

// Whether the bytes are a greeting, which is told.
bool tellGreeting(std::string_view bytes, Value& value)
{
    std::string_view why;
    GreetingCheck const check =
        bytes.size() < std::tuple_size_v<Greeting>
            ? GreetingCheck::foreign
            : checkGreeting(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(), &why);
    if (check == GreetingCheck::foreign) {
        return false;
    }
    value["kind"] = "greeting";
    if (check == GreetingCheck::full) {
        value["status"] = "full";
    } else if (check == GreetingCheck::refusal) {
        value["status"] = "refused";
        value["reason"] = why;
    } else if (check == GreetingCheck::otherVersion) {
        value["wrong"] = "it is of another version";
    }
    return true;
}

// A message whose content does not fit its operation is shown with what could be read.
void checkEnd(TipprmiStream const& stream, Value& value)
{
    if (stream.hasUnmarshallingFailed() || stream.available() != 0) {
        value["wrong"] = stream.hasUnmarshallingFailed() ? "it ends too early" : "it is too long";
    }
}

} // namespace

std::optional<std::string> Cutter::next()
{
    auto const* const begin = reinterpret_cast<unsigned char const*>(bytes_.data());
    if (isLost_) {
        return bytes_.empty() ? std::nullopt : std::optional(rest());
    }
    if (!isGreeted_) {
        std::size_t const length = greetingLength(begin, bytes_.size());
        if (bytes_.size() < length) {
            return std::nullopt;
        }
        isGreeted_ = true;
        std::string greeting = bytes_.substr(0, length);
        bytes_.erase(0, length);
        return greeting;
    }
    std::span<unsigned char const> left(begin, bytes_.size());
    Assembler::State const state = assembler_.feed(message_, left);
    bytes_.erase(0, bytes_.size() - left.size());
    if (state == Assembler::State::incomplete) {
        return std::nullopt;
    }
    isLost_ = state == Assembler::State::malformed;
    if (isLost_) {
        return rest();
    }
    std::string message(textOf(message_));
    assembler_.begin(message_);
    return message;
}

std::string Cutter::rest()
{
    std::string all = std::string(textOf(message_)) + bytes_;
    message_.clear();
    bytes_.clear();
    return all;
}

void Conversation::tellAddressed(MessageHeader const& header, TipprmiStream& stream, Told& told, Time time,
                                 std::size_t size)
{
    ObjectAddress address{};
    if (!readAddress(stream, address)) {
        told.value["wrong"] = "it ends too early";
        return;
    }
    catalogue::Operation const* const operation = catalogue::operationOf(address);
    told.value["object"] = address.id;
    if (header.kind != MessageKind::locate) {
        told.value["operation"] = catalogue::operationNameOf(address);
    }
    if (header.kind == MessageKind::request && operation != nullptr) {
        told.value["arguments"] = catalogue::argumentsOf(*operation, true, stream);
        catalogue::nameConstants(*operation, told.value["arguments"]);
        checkEnd(stream, told.value);
    }
    if (header.kind == MessageKind::notification && operation != nullptr) {
        TipprmiSequence<TipprmiAny> parameters;
        bool const isRead = readParameters(stream, parameters);
        told.value["parameters"] =
            isRead ? catalogue::unpackParameters(*operation, parameters) : catalogue::Value::object();
        catalogue::nameConstants(*operation, told.value["parameters"]);
        checkEnd(stream, told.value);
    }
    if (header.number != 0 && open_.size() < mostOpen) {
        open_[header.number] = {std::string(address.id), catalogue::operationNameOf(address), operation, time, size};
    }
}

void Conversation::tellAnswer(MessageHeader const& header, TipprmiStream& stream, Told& told, Time time)
{
    told.value["status"] = catalogue::nameOf(header.status());
    auto const found = open_.find(header.number);
    if (found == open_.end()) {
        told.value["wrong"] = "nobody asked for it";
        return;
    }
    Request const request = found->second;
    open_.erase(found);
    told.value["object"] = request.object;
    told.duration = time - request.time;
    told.requestSize = request.size;
    if (header.kind != MessageKind::reply) {
        return;
    }
    told.value["operation"] = request.operation;
    catalogue::addReply(told.value, header, request.described, stream);
    if (told.value.contains("results")) {
        catalogue::nameConstants(*request.described, told.value["results"]);
        checkEnd(stream, told.value);
    }
}

Conversation::Told Conversation::tell(std::string_view message, Time time)
{
    Told told;
    if (tellGreeting(message, told.value)) {
        return told;
    }
    TipprmiStream stream(100);
    stream.marshall(message.data(), static_cast<int>(message.size()));
    MessageHeader header{};
    if (!readHeader(stream, header)) {
        told.value["kind"] = "malformed";
        told.value["bytes"] = hexadecimal(message);
        return told;
    }
    told.value["kind"] = catalogue::nameOf(header.kind);
    told.value["number"] = header.number;
    switch (header.kind) {
    case MessageKind::reply:
    case MessageKind::locateReply:
    case MessageKind::subscriptionReply:
        tellAnswer(header, stream, told, time);
        break;
    default:
        tellAddressed(header, stream, told, time, message.size());
    }
    return told;
}

} // namespace trs::traffic
