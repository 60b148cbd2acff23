#include "tools/traffic/Conversation.h"

#include "catalogue/Constants.h"
#include "catalogue/MessageText.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>

namespace trs::traffic {

namespace {

using catalogue::Value;

constexpr std::size_t greetingSize = 8;
constexpr std::size_t lengthSize = 4;    // of the field that messages begin with
constexpr std::size_t mostOpen = 10'000; // requests that wait for an answer

std::string hexadecimal(std::string_view bytes)
{
    std::string text;
    for (char const each : bytes) {
        text += LogMakeString("%02x", static_cast<unsigned>(static_cast<unsigned char>(each)));
    }
    return text;
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
    std::size_t length = 0;
    if (isLost_) {
        length = bytes_.size();
    } else if (!isGreeted_) {
        length = greetingSize;
    } else if (bytes_.size() >= lengthSize) {
        length = messageLength(reinterpret_cast<unsigned char const*>(bytes_.data()));
        isLost_ = length == 0;
        length = isLost_ ? bytes_.size() : length;
    }
    if (length == 0 || bytes_.size() < length) {
        return std::nullopt;
    }
    isGreeted_ = true;
    std::string part = bytes_.substr(0, length);
    bytes_.erase(0, length);
    return part;
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
            isRead ? catalogue::parametersOf(*operation, parameters) : catalogue::Value::object();
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
    if (message.starts_with("TOIP") && message.size() == greetingSize) {
        told.value["kind"] = "greeting";
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
