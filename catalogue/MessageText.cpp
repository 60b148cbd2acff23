#include "catalogue/MessageText.h"

#include "platform/TipprmiStream.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::catalogue {

char const* nameOf(MessageKind kind)
{
    switch (kind) {
    case MessageKind::request:
        return "request";
    case MessageKind::reply:
        return "reply";
    case MessageKind::locate:
        return "locate";
    case MessageKind::locateReply:
        return "locate reply";
    case MessageKind::subscribe:
        return "subscribe";
    case MessageKind::unsubscribe:
        return "unsubscribe";
    case MessageKind::subscriptionReply:
        return "subscription reply";
    case MessageKind::notification:
        return "notification";
    }
    return "malformed";
}

char const* nameOf(ReplyStatus status)
{
    switch (status) {
    case ReplyStatus::done:
        return "done";
    case ReplyStatus::noSuchObject:
        return "no such object";
    case ReplyStatus::noSuchOperation:
        return "no such operation";
    case ReplyStatus::unreadableRequest:
        return "unreadable request";
    case ReplyStatus::replyTooLong:
        return "reply too long";
    case ReplyStatus::busy:
        return "busy";
    }
    return "unknown";
}

Operation const* operationOf(ObjectAddress const& address) { return findOperation(address.classId, address.opIndex); }

std::string operationNameOf(ObjectAddress const& address)
{
    Operation const* const operation = operationOf(address);
    return operation != nullptr ? fmt::format("{}.{}", operation->className, operation->name)
                                : fmt::format("0x{:08x}.{}", address.classId, address.opIndex);
}

Value argumentsOf(Operation const& operation, bool areIn, TipprmiStream& stream)
{
    Value arguments = Value::object();
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (operation.parameters[i].isIn == areIn) {
            arguments[std::string(names[i])] = readValue(stream, *operation.parameters[i].type);
        }
    }
    return arguments;
}

Value unpackParameters(Operation const& operation, TipprmiSequence<TipprmiAny> const& told)
{
    Value values = Value::object();
    unsigned long place = 0;
    auto const add = [&](Type const& type, std::string const& name) {
        if (place < told.getLength()) {
            TipprmiStream stream(told[place++]);
            values[name] = readValue(stream, type);
        }
    };
    if (operation.result != nullptr) {
        add(*operation.result, "result");
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        add(*operation.parameters[i].type, std::string(names[i]));
    }
    return values;
}

void addReply(Value& told, MessageHeader const& header, Operation const* operation, TipprmiStream& stream)
{
    told["status"] = nameOf(header.status());
    if (header.status() != ReplyStatus::done || operation == nullptr) {
        return;
    }
    Value results = Value::object();
    if (operation->result != nullptr) {
        Value result = readValue(stream, *operation->result);
        if (operation->result->kind != Type::Kind::status) {
            results["result"] = std::move(result);
        } else if (result.is_object() && result["failed"] != 0) {
            told["status"] = "refused";
        }
    }
    results.update(argumentsOf(*operation, false, stream));
    told["results"] = std::move(results);
}

} // namespace trs::catalogue
