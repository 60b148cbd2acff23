#include "clients/services/HwmItemClient.h"

#include "rmi/Call.h"

HwmItemClient::ClientSpecificMetaObject HwmItemClient::oMeta;
TreflectMetaObject* HwmItemClient::staticMeta() { return oMeta.completed(); }

long HwmItemClient::getSlotNumber() const { return call<&HwmItemClient::getSlotNumber>(*this); }
ResponseInfo<GetClient> HwmItemClient::getExpectedHwType(std::string& type) const
{
    return call<&HwmItemClient::getExpectedHwType>(*this, type);
}
ResponseInfo<GetClient> HwmItemClient::getActualHwType(std::string& type) const
{
    return call<&HwmItemClient::getActualHwType>(*this, type);
}
ResponseInfo<GetClient> HwmItemClient::getHwRevision(std::string& revision) const
{
    return call<&HwmItemClient::getHwRevision>(*this, revision);
}
ResponseInfo<GetClient> HwmItemClient::getHwSwCompatibility(std::string& compatibility) const
{
    return call<&HwmItemClient::getHwSwCompatibility>(*this, compatibility);
}
ResponseInfo<GetClient> HwmItemClient::getSerialNumber(std::string& number) const
{
    return call<&HwmItemClient::getSerialNumber>(*this, number);
}
ResponseInfo<GetClient> HwmItemClient::getManufacturingDate(std::string& date) const
{
    return call<&HwmItemClient::getManufacturingDate>(*this, date);
}
ResponseInfo<GetClient> HwmItemClient::getActiveSwVersion(std::string& version) const
{
    return call<&HwmItemClient::getActiveSwVersion>(*this, version);
}
ResponseInfo<GetClient> HwmItemClient::getActiveSwUpgradeProtVersion(unsigned long& version) const
{
    return call<&HwmItemClient::getActiveSwUpgradeProtVersion>(*this, version);
}
ResponseInfo<GetClient> HwmItemClient::getFallbackSwVersion(std::string& version) const
{
    return call<&HwmItemClient::getFallbackSwVersion>(*this, version);
}
ResponseInfo<GetClient> HwmItemClient::getFallbackSwUpgradeProtVersion(unsigned long& version) const
{
    return call<&HwmItemClient::getFallbackSwUpgradeProtVersion>(*this, version);
}
ResponseInfo<GetClient> HwmItemClient::getSupplementaryData(std::string& data) const
{
    return call<&HwmItemClient::getSupplementaryData>(*this, data);
}
ResponseInfo<GetClient> HwmItemClient::getRegistrationResult(unsigned long& result) const
{
    return call<&HwmItemClient::getRegistrationResult>(*this, result);
}
ResponseInfo<GetClient> HwmItemClient::getRunning(bool& running) const
{
    return call<&HwmItemClient::getRunning>(*this, running);
}
