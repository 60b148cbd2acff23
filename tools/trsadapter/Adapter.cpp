#include "tools/trsadapter/Adapter.h"

#include "broker/CallFailure.h"
#include "broker/PrintableText.h"
#include "broker/UnitValues.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Console.h"

#include <climits>
#include <fmt/format.h>
#include <string_view>

namespace trs::adapter {

namespace {

constexpr std::string_view publicAddress = "public IP address: ";

Adapter::Outcome failed(ZynNmaWrapper::AlarmFailure why)
{
    using Failure = ZynNmaWrapper::AlarmFailure;
    if (why == Failure::invalid) {
        return {false, "invalid", "is invalid and was not sent"};
    }
    if (why == Failure::notConnected) {
        return {false, "unreachable", "was not sent: the agent cannot be reached"};
    }
    CallFailure const& failure = lastCallFailure();
    return failure.kind == CallFailure::Kind::none ? Adapter::Outcome{false, "refused", "delivered and refused"}
                                                   : Adapter::Outcome{false, "call", "failed: " + failure.reason};
}

} // namespace

Adapter::Adapter(Listeners listeners) : listeners_(std::move(listeners))
{
    UnitValues::instance().setListener([this](std::string const& told) {
        if (told.starts_with(publicAddress)) {
            std::string const address = told.substr(publicAddress.size());
            tools::say("applied " + escaped(address));
            if (listeners_.applied) {
                listeners_.applied(address);
            }
        }
    });
}

Adapter::~Adapter()
{
    gaps_.reset();
    wrapper_.reset();
    UnitValues::instance().setListener(nullptr);
}

bool Adapter::connect()
{
    gaps_.reset();
    wrapper_.reset();
    wrapper_ = std::make_unique<ZynNmaWrapper>();
    gaps_ = std::make_unique<GapListener>([this](NotificationGap const& gap) {
        if (gap.until) {
            catchUp();
        }
    });
    bool const isReached = wrapper_->followsAddress();
    tools::say(isReached ? "the agent is reached" : "the agent cannot be reached");
    return isReached;
}

// On a handler thread.
void Adapter::catchUp()
{
    std::string const address =
        NmiRmiAdapterClient(TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME)).getPublicIpAddrRmi();
    if (address != UnitValues::instance().publicAddress()) {
        wrapper_->setPublicIpAddr(address);
    }
}

bool Adapter::sendAlarm(Alarm const& alarm)
{
    Outcome const outcome =
        wrapper_->sendAlarm(alarm) ? Outcome{true, "", "delivered and accepted"} : failed(wrapper_->lastAlarmFailure());
    tools::say(fmt::format("alarm {},{} {}", alarm.type, alarm.state, outcome.text));
    if (listeners_.alarm) {
        listeners_.alarm(alarm, outcome);
    }
    return outcome.isAccepted;
}

Adapter::Standing Adapter::standing()
{
    TreflectHandlerState const running;
    NmiRmiAdapterClient const agent{TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME)};
    std::string const address = agent.isConnected() ? agent.getPublicIpAddrRmi() : std::string();
    if (lastCallFailure().kind != CallFailure::Kind::none) {
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
