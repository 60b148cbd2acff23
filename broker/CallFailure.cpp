#include "broker/CallFailure.h"

#include "broker/PrintableText.h"
#include "platform/NmaLogHelper.h"

namespace trs {

namespace {

// Beginning a call touches only this.
thread_local bool hasFailed = false;

CallFailure& record()
{
    thread_local CallFailure failure;
    return failure;
}

} // namespace

char const* CallFailure::effect() const
{
    return carriedOut == CarriedOut::no    ? "it was not carried out"
           : carriedOut == CarriedOut::yes ? "it was carried out"
                                           : "whether it was carried out is unknown";
}

std::string CallFailure::text() const
{
    if (kind == Kind::none) {
        return "no failure";
    }
    std::string const where = peer.empty() ? std::string() : " at " + peer;
    if (classId == 0) {
        return LogMakeString("object '%s'%s is not reached: %s", printable(object.getIdString()).c_str(), where.c_str(),
                             reason.c_str());
    }
    return LogMakeString("call of operation %u of class 0x%08X on object '%s'%s failed: %s; %s",
                         static_cast<unsigned>(opIndex), static_cast<unsigned>(classId),
                         printable(object.getIdString()).c_str(), where.c_str(), reason.c_str(), effect());
}

CallFailure const& lastCallFailure()
{
    if (!hasFailed) {
        record() = CallFailure();
    }
    return record();
}

void resetCallFailure() { hasFailed = false; }

void recordCallFailure(CallFailure failure)
{
    hasFailed = true;
    record() = std::move(failure);
}

void reportCallFailure(CallFailure failure)
{
    recordCallFailure(std::move(failure));
    LogDispatch(4, record().text());
}

} // namespace trs
