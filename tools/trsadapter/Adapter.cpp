#include "tools/trsadapter/Adapter.h"

#include "broker/CallFailure.h"
#include "broker/Log.h"
#include "broker/PrintableText.h"
#include "broker/UnitValues.h"
#include "platform/NmaLogHelper.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Console.h"

#include <climits>
#include <string_view>

namespace trs::adapter {

namespace {

constexpr char const* notConnected = "NmiRmiAdapterClient is not connected.";
constexpr char const* isInvalid = "zynToNmaAlarmInfo failed.";
constexpr std::string_view publicAddress = "public IP address: ";

} // namespace

Adapter::Adapter(Listeners listeners) : listeners_(std::move(listeners))
{
    UnitValues::instance().setListener([this](std::string const& told) {
        if (told.starts_with(publicAddress)) {
            std::string const address = told.substr(publicAddress.size());
            tools::say("applied " + printable(address));
            if (listeners_.applied) {
                listeners_.applied(address);
            }
        }
    });
}

Adapter::~Adapter()
{
    wrapper_.reset();
    UnitValues::instance().setListener(nullptr);
}

bool Adapter::connect()
{
    wrapper_.reset();
    LogCapture const log; // the wrapper tells in no other way
    wrapper_ = std::make_unique<ZynNmaWrapper>();
    bool const isReached = !log.contains(notConnected);
    tools::say(isReached ? "the agent is reached" : "the agent cannot be reached");
    return isReached;
}

bool Adapter::sendAlarm(Alarm const& alarm)
{
    LogCapture const log;
    bool const isAccepted = wrapper_->sendAlarm(alarm);
    CallFailure const& failure = lastCallFailure();
    std::string const text = isAccepted                                ? "delivered and accepted"
                             : log.contains(isInvalid)                 ? "is invalid and was not sent"
                             : log.contains(notConnected)              ? "was not sent: the agent cannot be reached"
                             : failure.kind != CallFailure::Kind::none ? "failed: " + failure.reason
                                                                       : "delivered and refused";
    tools::say(LogMakeString("alarm %d,%d ", alarm.type, alarm.state) + text);
    if (listeners_.alarm) {
        listeners_.alarm(alarm, {isAccepted, text});
    }
    return isAccepted;
}

Adapter::Standing Adapter::standing()
{
    TreflectHandlerState const running;
    NmiRmiAdapterClient const agent{TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME)};
    std::string const address = agent.isConnected() ? agent.getPublicIpAddrRmi() : std::string();
    if (!agent.isConnected() || lastCallFailure().kind != CallFailure::Kind::none) {
        return Standing::unreachable;
    }
    bool const isApplied = address.empty() || address == UnitValues::instance().publicAddress();
    return isApplied ? Standing::good : Standing::hasOtherAddress;
}

std::string Adapter::announce()
{
    TreflectHandlerState const running;
    NmiRmiAdapterClient(TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME)).notifyPublicIpAddrChangeRmi();
    CallFailure const& failure = lastCallFailure();
    return failure.kind == CallFailure::Kind::none ? std::string() : failure.reason;
}

bool Adapter::parse(std::string const& text, Alarm& alarm)
{
    std::string_view const whole = text;
    std::size_t const comma = whole.find(',');
    long type = 0;
    long state = 0;
    if (comma == std::string_view::npos || !catalogue::parseNumber(whole.substr(0, comma), INT_MIN, INT_MAX, type) ||
        !catalogue::parseNumber(whole.substr(comma + 1), INT_MIN, INT_MAX, state)) {
        return false;
    }
    alarm = {static_cast<int>(type), static_cast<int>(state)};
    return true;
}

} // namespace trs::adapter
