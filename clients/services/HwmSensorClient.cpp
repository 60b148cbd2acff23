#include "clients/services/HwmSensorClient.h"

#include "rmi/Call.h"

HwmSensorClient::ClientSpecificMetaObject HwmSensorClient::oMeta;
TreflectMetaObject* HwmSensorClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> HwmSensorClient::getSensorName(std::string& name) const
{
    return call<&HwmSensorClient::getSensorName>(*this, name);
}
ResponseInfo<GetClient> HwmSensorClient::getTemperature(long& temperature) const
{
    return call<&HwmSensorClient::getTemperature>(*this, temperature);
}
ResponseInfo<SetClient> HwmSensorClient::updateTemperature(long const& temperature) const
{
    return call<&HwmSensorClient::updateTemperature>(*this, temperature);
}
