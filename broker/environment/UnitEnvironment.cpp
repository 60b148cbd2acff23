#include "platform/UnitEnvironment.h"

#include "broker/UnitValues.h"
#include "platform/NmaLogHelper.h"

namespace trs {

UnitValues& UnitValues::instance()
{
    static UnitValues& values = *new UnitValues;
    return values;
}

UnitValues::Address UnitValues::localManagementAddress() const
{
    std::lock_guard const lock(mutex_);
    return values_.localManagementAddress;
}

void UnitValues::setLocalManagementAddress(Address const& address)
{
    std::lock_guard const lock(mutex_);
    values_.localManagementAddress = address;
}

int UnitValues::productType() const
{
    std::lock_guard const lock(mutex_);
    return values_.productType;
}

void UnitValues::setProductType(int type)
{
    std::lock_guard const lock(mutex_);
    values_.productType = type;
}

std::string UnitValues::publicAddress() const
{
    std::lock_guard const lock(mutex_);
    return values_.publicAddress;
}

bool UnitValues::isPrivateMaskSet() const
{
    std::lock_guard const lock(mutex_);
    return values_.isPrivateMaskSet;
}

void UnitValues::setListener(Listener listener)
{
    std::lock_guard const lock(mutex_);
    values_.listener = std::move(listener);
}

void UnitValues::tellPublicAddress(std::string const& address)
{
    Listener listener;
    {
        std::lock_guard const lock(mutex_);
        values_.publicAddress = address;
        listener = values_.listener;
    }
    if (listener) {
        listener("public IP address: " + address);
    }
}

void UnitValues::tellPrivateMask()
{
    Listener listener;
    {
        std::lock_guard const lock(mutex_);
        values_.isPrivateMaskSet = true;
        listener = values_.listener;
    }
    if (listener) {
        listener("transport private IP address mask");
    }
}

void UnitValues::reset()
{
    std::lock_guard const lock(mutex_);
    values_ = Values();
}

} // namespace trs

int envInfoIpAddr(unsigned char address[4])
{
    trs::UnitValues::Address const known = trs::UnitValues::instance().localManagementAddress();
    for (std::size_t i = 0; i < known.size(); ++i) {
        address[i] = known[i].value_or(address[i]);
    }
    return 0;
}

int NmaConfigurator::getProdType() { return trs::UnitValues::instance().productType(); }

void OSWrap::UserEnvironment::setIpAddr(OSWrapUsrEnvIpAddrType type, std::string const& address)
{
    if (type == OSWRAP_USR_ENV_PUBLIC_IP_ADDR) {
        trs::UnitValues::instance().tellPublicAddress(address);
    } else {
        LogDispatch(4, LogMakeString("the unit has no address of type %d to set", static_cast<int>(type)));
    }
}

void OSWrap::UserEnvironment::setTrsPrivIpAddrMask() { trs::UnitValues::instance().tellPrivateMask(); }
