#include "unit/UnitAgent.h"

#include "broker/PrintableText.h"
#include "platform/NmaLogHelper.h"
#include "platform/TreflectORB.h"
#include "unit/Journal.h"

namespace trs::sim {

UnitAgent::UnitAgent(std::string const& address, Listener listener) : listener_(std::move(listener))
{
    change(address);
    servant_
        .on<&NmiRmiAdapterClient::notifyPublicIpAddrChangeRmi>([this] {
            answer("notifyPublicIpAddrChangeRmi");
            say(address_.empty() ? "an empty address announced" : "address " + escaped(address_) + " announced");
        })
        .on<&NmiRmiAdapterClient::getPublicIpAddrRmi>([this] {
            answer("getPublicIpAddrRmi");
            return address_;
        })
        .on<&NmiRmiAdapterClient::sendAlarmRmi>([this](NmiRmiAdapterClient::AlarmInfo const& alarm) {
            answer("sendAlarmRmi");
            say(LogMakeString("alarm %d,%d received and %s", static_cast<int>(alarm.type),
                              static_cast<int>(alarm.state), acceptsAlarms_ ? "accepted" : "refused"));
            return acceptsAlarms_;
        });
}

void UnitAgent::sayAddress() const { say(address_.empty() ? "no address" : "address " + escaped(address_)); }

void UnitAgent::setAddress(std::string const& address)
{
    change(address);
    sayAddress();
}

void UnitAgent::announce(std::string const& address)
{
    change(address);
    NmiRmiAdapterClient(&servant_).notifyPublicIpAddrChangeRmi();
}

void UnitAgent::change(std::string const& address)
{
    address_ = address;
    if (listener_) {
        listener_(address);
    }
}

void UnitAgent::setAcceptsAlarms(bool accepts)
{
    acceptsAlarms_ = accepts;
    say(accepts ? "alarms are accepted" : "alarms are refused");
}

void UnitAgent::hang()
{
    hangsNext_ = true;
    say("the next call of the agent will hang");
}

void UnitAgent::letGo()
{
    std::lock_guard const lock(mutex_);
    isEnded_ = true;
    ended_.notify_all();
}

// Comes first in every operation. The unit's own calls never hang: they would keep it from ending.
void UnitAgent::answer(char const* operation)
{
    if (!hangsNext_ || !TreflectORB::isHandlerThread()) {
        return;
    }
    hangsNext_ = false;
    say(std::string("hanging in ") + operation);
    TreflectORB::releaseRunPermission();
    {
        std::unique_lock lock(mutex_);
        ended_.wait(lock, [this] { return isEnded_; });
    }
    TreflectORB::getRunPermission();
}

} // namespace trs::sim
