#include "tools/trssim/CallLog.h"

#include "platform/NmaLogHelper.h"
#include "platform/TipprmiStream.h"
#include "platform/host/CallFailure.h"
#include "tools/support/Timestamp.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace sim {

namespace {

using catalogue::Operation;
using catalogue::Type;
using catalogue::Value;

char const* nameOf(host::ReplyStatus status)
{
    switch (status) {
    case host::ReplyStatus::done:
        return "done";
    case host::ReplyStatus::noSuchObject:
        return "no such object";
    case host::ReplyStatus::noSuchOperation:
        return "no such operation";
    case host::ReplyStatus::unreadableRequest:
        return "unreadable request";
    case host::ReplyStatus::replyTooLong:
        return "reply too long";
    }
    return "unknown";
}

TipprmiStream streamOf(std::string_view bytes)
{
    TipprmiStream stream(100);
    stream.marshall(bytes.data(), static_cast<int>(bytes.size()));
    return stream;
}

// The in-arguments, or the out-arguments, by name.
Value argumentsOf(Operation const& operation, bool isIn, TipprmiStream& stream)
{
    Value arguments = Value::object();
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (operation.parameters[i].isIn == isIn) {
            arguments[std::string(names[i])] = catalogue::readValue(stream, *operation.parameters[i].type);
        }
    }
    return arguments;
}

// What a reply says: its status, and the results of a call that was done.
void addReply(Value& line, Operation const* operation, std::string_view bytes)
{
    TipprmiStream reply = streamOf(bytes);
    host::MessageHeader header{};
    if (!host::readHeader(reply, header)) {
        return;
    }
    line["status"] = nameOf(header.status());
    if (header.status() != host::ReplyStatus::done || operation == nullptr) {
        return;
    }
    Value results = Value::object();
    if (operation->result != nullptr) {
        Value result = catalogue::readValue(reply, *operation->result);
        if (operation->result->kind != Type::Kind::status) {
            results["result"] = std::move(result);
        } else if (result["failed"] != 0) {
            line["status"] = "refused";
        }
    }
    results.update(argumentsOf(*operation, false, reply));
    line["results"] = std::move(results);
}

} // namespace

Operation const* operationOf(host::ObjectAddress const& address)
{
    catalogue::Class const* const type = catalogue::findClass(address.classId);
    if (type == nullptr) {
        return nullptr;
    }
    auto const found = std::ranges::find(type->own, address.opIndex, &Operation::index);
    return found != type->own.end() ? &*found : nullptr;
}

CallLog::~CallLog()
{
    if (file_ != nullptr) {
        static_cast<void>(std::fclose(file_));
    }
}

std::string CallLog::open(std::string const& file)
{
    file_ = std::fopen(file.c_str(), "we");
    return file_ != nullptr ? "" : "'" + host::printable(file) + "' cannot be written: " + std::strerror(errno);
}

void CallLog::write(Entry const& entry)
{
    Operation const* const operation = operationOf(entry.address);
    Value line = Value::object();
    line["number"] = 0; // in its place, to be replaced under the lock
    if (isTimed_) {
        auto const end = std::chrono::system_clock::now();
        line["time"] = tools::timestamp(entry.begin);
        line["microseconds"] = std::chrono::duration_cast<std::chrono::microseconds>(end - entry.begin).count();
    }
    line["unitTime"] = entry.unitTime;
    line["object"] = entry.address.id;
    if (operation != nullptr) {
        line["operation"] = std::string(operation->className) + '.' + std::string(operation->name);
        TipprmiStream arguments = streamOf(entry.arguments);
        line["arguments"] = argumentsOf(*operation, true, arguments);
    } else {
        line["operation"] = LogMakeString("0x%08x.%u", static_cast<unsigned>(entry.address.classId),
                                          static_cast<unsigned>(entry.address.opIndex));
    }
    addReply(line, operation, entry.reply);
    if (!entry.fault.empty()) {
        line["fault"] = entry.fault;
    }
    std::lock_guard const lock(mutex_);
    line["number"] = ++count_;
    static_cast<void>(std::fprintf(file_, "%s\n", catalogue::toJson(line, -1).c_str()));
    static_cast<void>(std::fflush(file_));
}

} // namespace sim
