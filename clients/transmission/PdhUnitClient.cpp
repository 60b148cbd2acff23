#include "clients/transmission/PdhUnitClient.h"

#include "rmi/Call.h"

PdhUnitClient::ClientSpecificMetaObject PdhUnitClient::oMeta;
TreflectMetaObject* PdhUnitClient::staticMeta() { return oMeta.completed(); }

PdhUnitClient::PdhInfoSeq PdhUnitClient::discoverPdhSettings() const
{
    return call<&PdhUnitClient::discoverPdhSettings>(*this);
}
void PdhUnitClient::setPdhSettings(PdhInfoSeq const& settings) const
{
    call<&PdhUnitClient::setPdhSettings>(*this, settings);
}
QelLongClient PdhUnitClient::getPathType() const { return call<&PdhUnitClient::getPathType>(*this); }
QelLongClient PdhUnitClient::getPathFramingMode() const { return call<&PdhUnitClient::getPathFramingMode>(*this); }
QelShortClient PdhUnitClient::getZqBitPosition() const { return call<&PdhUnitClient::getZqBitPosition>(*this); }
