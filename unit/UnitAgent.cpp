#include "unit/UnitAgent.h"

#include "broker/PrintableText.h"
#include "platform/TreflectORB.h"
#include "unit/Journal.h"
#include "unit/Object.h"
#include "unit/PublicAddress.h"

#include <fmt/format.h>

namespace trs::sim {

UnitAgent::UnitAgent(Inventory& inventory, PublicAddress& address)
    : address_(address), object_(std::make_unique<Object>(inventory, NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME,
                                                          reflect::className<NmiRmiAdapterClient>)),
      changes_(address.changes(), [this] { object_->changed(); })
{
    address_.setAnnouncer([this] {
        isAnnouncing_ = true;
        object_->proxy<NmiRmiAdapterClient>().notifyPublicIpAddrChangeRmi();
        isAnnouncing_ = false;
    });
    object_->facts().addTold<&NmiRmiAdapterClient::getPublicIpAddrRmi>(address_.text(),
                                                                       [this](std::string const& text) {
                                                                           address_.set(text);
                                                                           return true;
                                                                       });
    object_->facts().add("acceptsAlarms", acceptsAlarms_);
    object_->facts().add("hangsNext", hangsNext_);
    object_->servant()
        .on<&NmiRmiAdapterClient::notifyPublicIpAddrChangeRmi>([this] {
            answer("notifyPublicIpAddrChangeRmi");
            say(address_.text().empty() ? "an empty address announced"
                                        : "address " + escaped(address_.text()) + " announced");
        })
        .on<&NmiRmiAdapterClient::getPublicIpAddrRmi>([this] {
            answer("getPublicIpAddrRmi");
            return address_.text();
        })
        .on<&NmiRmiAdapterClient::sendAlarmRmi>([this](NmiRmiAdapterClient::AlarmInfo const& alarm) {
            answer("sendAlarmRmi");
            say(fmt::format("alarm {},{} received and {}", static_cast<int>(alarm.type), static_cast<int>(alarm.state),
                            acceptsAlarms_ ? "accepted" : "refused"));
            return acceptsAlarms_;
        });
}

UnitAgent::~UnitAgent()
{
    letGo();
    address_.setAnnouncer(nullptr);
}

void UnitAgent::sayAddress() const
{
    say(address_.text().empty() ? "no address" : "address " + escaped(address_.text()));
}

void UnitAgent::setAddress(std::string const& address)
{
    address_.set(address);
    sayAddress();
}

void UnitAgent::announce(std::string const& address) { address_.announce(address); }

void UnitAgent::setAcceptsAlarms(bool accepts)
{
    acceptsAlarms_ = accepts;
    object_->changed();
    say(accepts ? "alarms are accepted" : "alarms are refused");
}

void UnitAgent::hang()
{
    hangsNext_ = true;
    object_->changed();
    say("the next call of the agent will hang");
}

void UnitAgent::letGo()
{
    std::lock_guard const lock(mutex_);
    isEnded_ = true;
    ended_.notify_all();
}

// Comes first in every operation. The unit's own calls never hang: they would keep it from ending, or whoever changed
// the address waiting.
void UnitAgent::answer(char const* operation)
{
    if (!hangsNext_ || isAnnouncing_ || !TreflectORB::isHandlerThread()) {
        return;
    }
    hangsNext_ = false;
    object_->changed();
    say(std::string("hanging in ") + operation);
    TreflectORB::releaseRunPermission();
    {
        std::unique_lock lock(mutex_);
        ended_.wait(lock, [this] { return isEnded_; });
    }
    TreflectORB::getRunPermission();
}

} // namespace trs::sim
