#include "clients/transmission/TransmissionPortClient.h"

#include "rmi/Call.h"

TransmissionPortClient::ClientSpecificMetaObject TransmissionPortClient::oMeta;
TreflectMetaObject* TransmissionPortClient::staticMeta() { return oMeta.completed(); }

TransmissionUnitClient TransmissionPortClient::getTransmissionUnitPtr() const
{
    return call<&TransmissionPortClient::getTransmissionUnitPtr>(*this);
}
QelLongClient TransmissionPortClient::getPathType() const { return call<&TransmissionPortClient::getPathType>(*this); }
unsigned char TransmissionPortClient::getSsmValueTx() const
{
    return call<&TransmissionPortClient::getSsmValueTx>(*this);
}
unsigned char TransmissionPortClient::getSsmValueRx() const
{
    return call<&TransmissionPortClient::getSsmValueRx>(*this);
}
ResponseInfo<SetClient> TransmissionPortClient::setSsmValueTx(unsigned char const& value) const
{
    return call<&TransmissionPortClient::setSsmValueTx>(*this, value);
}
ResponseInfo<SetClient> TransmissionPortClient::setSsmValueRx(unsigned char const& value) const
{
    return call<&TransmissionPortClient::setSsmValueRx>(*this, value);
}
