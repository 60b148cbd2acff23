#include "unit/CallLog.h"

#include "catalogue/Json.h"
#include "catalogue/MessageText.h"
#include "catalogue/Text.h"
#include "platform/NmaLogHelper.h"
#include "platform/TipprmiStream.h"

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

std::string CallLog::open(std::string const& file)
{
    name_ = file;
    std::error_code const error = file_.open(file);
    return error ? catalogue::whyNotWritten(file, error) : std::string();
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
    std::error_code const error = file_.append(catalogue::toJson(line, -1) + '\n');
    if (error && isWhole_.exchange(false)) {
        LogDispatch(3, catalogue::whyNotWritten(name_, error) + ": calls are missing in it");
    }
}

} // namespace trs::sim
