#include "adapter/ZynNmaWrapper.h"

#include "platform/NmaLogHelper.h"
#include "platform/UnitEnvironment.h"

ZynNmaWrapper::ZynNmaWrapper() : notificator(*this, &ZynNmaWrapper::publicIpAddrChangeDetected)
{
    if (NmiRmiAdapterClient* const agent = nmiRmiInterface.getNmiRmiAdapterClient()) {
        isFollowing = agent->operation("notifyPublicIpAddrChangeRmi").postObserve(&notificator);
        setPublicIpAddr(agent->getPublicIpAddrRmi());
    }
    NmaLogHelper(6, __FILE__, __func__, __LINE__).message("setTrsPrivIpAddrMask.");
    OSWrap::UserEnvironment::setTrsPrivIpAddrMask();
}

// A notification that is already on its way must not find the agent link gone.
ZynNmaWrapper::~ZynNmaWrapper() { notificator.withdraw(); }

bool ZynNmaWrapper::publicIpAddrChangeDetected(TreflectObserver&)
{
    setPublicIpAddr(nmiRmiInterface.getPublicIpAddr());
    return true;
}

void ZynNmaWrapper::setPublicIpAddr(std::string const& address)
{
    if (address.empty()) {
        NmaLogHelper(6, __FILE__, __func__, __LINE__).message("Public ip addr not set.");
        return;
    }
    NmaLogHelper(6, __FILE__, __func__, __LINE__).message("Public ip addr [%s].", address.c_str());
    OSWrap::UserEnvironment::setIpAddr(OSWRAP_USR_ENV_PUBLIC_IP_ADDR, address);
}

bool ZynNmaWrapper::sendAlarm(CertMgrAlarmInfo const& alarm)
{
    NmiRmiAdapterClient::AlarmInfo translated{};
    if (!zynToNmaAlarmInfo(alarm, translated)) {
        NmaLogHelper(6, __FILE__, __func__, __LINE__).message("zynToNmaAlarmInfo failed.");
        return failAlarm(AlarmFailure::invalid);
    }
    bool wasReached = false;
    return nmiRmiInterface.sendAlarm(translated, wasReached) ||
           failAlarm(wasReached ? AlarmFailure::notAccepted : AlarmFailure::notConnected);
}

bool ZynNmaWrapper::failAlarm(AlarmFailure why)
{
    lastFailure = why;
    ++failureCount;
    return false;
}

bool ZynNmaWrapper::zynToNmaAlarmInfo(CertMgrAlarmInfo const& from, NmiRmiAdapterClient::AlarmInfo& to)
{
    bool isValid = true;
    if (from.type == 0 || from.type == 1) {
        to.type = static_cast<NmiRmiAdapterClient::AlarmType>(from.type);
    } else {
        NmaLogHelper(6, __FILE__, __func__, __LINE__).message("Invalid alarm type[%d].", from.type);
        isValid = false;
    }
    if (from.state >= 0 && from.state <= 2) {
        to.state = static_cast<NmiRmiAdapterClient::AlarmState>(from.state);
    } else {
        NmaLogHelper(6, __FILE__, __func__, __LINE__).message("Invalid alarm state[%d].", from.state);
        isValid = false;
    }
    return isValid;
}
