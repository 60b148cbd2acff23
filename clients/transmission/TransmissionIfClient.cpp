#include "clients/transmission/TransmissionIfClient.h"

#include "rmi/Call.h"

TransmissionIfClient::ClientSpecificMetaObject TransmissionIfClient::oMeta;
TreflectMetaObject* TransmissionIfClient::staticMeta() { return oMeta.completed(); }

QelLongClient TransmissionIfClient::getPathType() const { return call<&TransmissionIfClient::getPathType>(*this); }
TipprmiSequence<ApplicationObjectClient> TransmissionIfClient::getReservationSeq() const
{
    return call<&TransmissionIfClient::getReservationSeq>(*this);
}
TransmissionUnitClient TransmissionIfClient::getTransmissionUnit() const
{
    return call<&TransmissionIfClient::getTransmissionUnit>(*this);
}
PortBpData TransmissionIfClient::getPortBpData() const { return call<&TransmissionIfClient::getPortBpData>(*this); }
ApplicationObjectClient TransmissionIfClient::getTrailTpPtr() const
{
    return call<&TransmissionIfClient::getTrailTpPtr>(*this);
}
ConditionClient TransmissionIfClient::getLocd() const { return call<&TransmissionIfClient::getLocd>(*this); }
void TransmissionIfClient::reserve(ApplicationObjectClient const& user) const
{
    call<&TransmissionIfClient::reserve>(*this, user);
}
void TransmissionIfClient::cancelReservation(ApplicationObjectClient const& user) const
{
    call<&TransmissionIfClient::cancelReservation>(*this, user);
}
void TransmissionIfClient::resetReservations() const { call<&TransmissionIfClient::resetReservations>(*this); }
