#include "unit/CallLog.h"

#include "broker/PrintableText.h"
#include "catalogue/MessageText.h"
#include "catalogue/Text.h"
#include "platform/TipprmiStream.h"

#include <cerrno>
#include <cstring>

namespace trs::sim {

namespace {

using catalogue::Value;

TipprmiStream streamOf(std::string_view bytes)
{
    TipprmiStream stream(100);
    stream.marshall(bytes.data(), static_cast<int>(bytes.size()));
    return stream;
}

} // namespace

CallLog::~CallLog()
{
    if (file_ != nullptr) {
        static_cast<void>(std::fclose(file_));
    }
}

std::string CallLog::open(std::string const& file)
{
    file_ = std::fopen(file.c_str(), "we");
    return file_ != nullptr ? "" : "'" + printable(file) + "' cannot be written: " + std::strerror(errno);
}

void CallLog::write(Entry const& entry)
{
    catalogue::Operation const* const operation = catalogue::operationOf(entry.address);
    Value line = Value::object();
    line["number"] = 0; // in its place, to be replaced under the lock
    if (isTimed_) {
        auto const end = std::chrono::system_clock::now();
        line["time"] = catalogue::timestamp(entry.begin);
        line["microseconds"] = std::chrono::duration_cast<std::chrono::microseconds>(end - entry.begin).count();
    }
    line["unitTime"] = entry.unitTime;
    line["object"] = entry.address.id;
    line["operation"] = catalogue::operationNameOf(entry.address);
    if (operation != nullptr) {
        TipprmiStream arguments = streamOf(entry.arguments);
        line["arguments"] = catalogue::argumentsOf(*operation, true, arguments);
    }
    TipprmiStream reply = streamOf(entry.reply);
    if (MessageHeader header{}; readHeader(reply, header)) {
        catalogue::addReply(line, header, operation, reply);
    }
    if (!entry.fault.empty()) {
        line["fault"] = entry.fault;
    }
    std::lock_guard const lock(mutex_);
    line["number"] = ++count_;
    static_cast<void>(std::fprintf(file_, "%s\n", catalogue::toJson(line, -1).c_str()));
    static_cast<void>(std::fflush(file_));
}

} // namespace trs::sim
