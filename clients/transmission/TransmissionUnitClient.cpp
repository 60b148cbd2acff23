#include "clients/transmission/TransmissionUnitClient.h"

#include "rmi/Call.h"

TransmissionUnitClient::ClientSpecificMetaObject TransmissionUnitClient::oMeta;
TreflectMetaObject* TransmissionUnitClient::staticMeta() { return oMeta.completed(); }

HwmUnitClient TransmissionUnitClient::getHwmUnit() const { return call<&TransmissionUnitClient::getHwmUnit>(*this); }
std::string TransmissionUnitClient::getHwmType() const { return call<&TransmissionUnitClient::getHwmType>(*this); }
unsigned char TransmissionUnitClient::getSlotNumber() const
{
    return call<&TransmissionUnitClient::getSlotNumber>(*this);
}
unsigned char TransmissionUnitClient::getUtopiaBusCount() const
{
    return call<&TransmissionUnitClient::getUtopiaBusCount>(*this);
}
PortBpData TransmissionUnitClient::getUtopiaAddress(PortBpData const& port) const
{
    return call<&TransmissionUnitClient::getUtopiaAddress>(*this, port);
}
ResponseInfo<RunClient> TransmissionUnitClient::reserveUtopiaAddress(PortBpData const& port) const
{
    return call<&TransmissionUnitClient::reserveUtopiaAddress>(*this, port);
}
void TransmissionUnitClient::cancelUtopiaAddressReservation(PortBpData const& port) const
{
    call<&TransmissionUnitClient::cancelUtopiaAddressReservation>(*this, port);
}
