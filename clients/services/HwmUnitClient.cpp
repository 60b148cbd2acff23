#include "clients/services/HwmUnitClient.h"

#include "rmi/Call.h"

HwmUnitClient::ClientSpecificMetaObject HwmUnitClient::oMeta;
TreflectMetaObject* HwmUnitClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> HwmUnitClient::getModule(long const& number, HwmModuleClient& module) const
{
    return call<&HwmUnitClient::getModule>(*this, number, module);
}
ResponseInfo<SetClient> HwmUnitClient::createModule(long const& number, std::string const& description) const
{
    return call<&HwmUnitClient::createModule>(*this, number, description);
}
ResponseInfo<SetClient> HwmUnitClient::deleteModule(long const& number) const
{
    return call<&HwmUnitClient::deleteModule>(*this, number);
}
ResponseInfo<GetClient> HwmUnitClient::getLed(HwmLedClient& led) const
{
    return call<&HwmUnitClient::getLed>(*this, led);
}
ResponseInfo<GetClient> HwmUnitClient::getSensor(HwmSensorClient& sensor) const
{
    return call<&HwmUnitClient::getSensor>(*this, sensor);
}
