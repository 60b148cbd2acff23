#include "clients/ip/EthLinkClient.h"

#include "rmi/Call.h"

EthLinkClient::ClientSpecificMetaObject EthLinkClient::oMeta;
TreflectMetaObject* EthLinkClient::staticMeta() { return oMeta.completed(); }

EthPortClient EthLinkClient::getPort() const { return call<&EthLinkClient::getPort>(*this); }
TipprmiSequence<unsigned short> EthLinkClient::getVlanTags() const { return call<&EthLinkClient::getVlanTags>(*this); }
long EthLinkClient::getPacketSize() const { return call<&EthLinkClient::getPacketSize>(*this); }
EthLinkClient::AccFrameType EthLinkClient::getAccFrameType() const
{
    return call<&EthLinkClient::getAccFrameType>(*this);
}
long EthLinkClient::getShapedBw() const { return call<&EthLinkClient::getShapedBw>(*this); }
EthLinkClient::TransmissionMode EthLinkClient::getTransmissionMode() const
{
    return call<&EthLinkClient::getTransmissionMode>(*this);
}
EthLinkClient::DriverInfo EthLinkClient::getDriverInfo() const { return call<&EthLinkClient::getDriverInfo>(*this); }
ConditionClient EthLinkClient::getLOC() const { return call<&EthLinkClient::getLOC>(*this); }
ConditionClient EthLinkClient::getSfpCompl() const { return call<&EthLinkClient::getSfpCompl>(*this); }
ConditionClient EthLinkClient::getSfpHw() const { return call<&EthLinkClient::getSfpHw>(*this); }
EthLinkClient::TransmissionMode EthLinkClient::getDefaultTransmissionMode() const
{
    return call<&EthLinkClient::getDefaultTransmissionMode>(*this);
}
EthLinkClient::DuplexType EthLinkClient::getDuplexMode() const { return call<&EthLinkClient::getDuplexMode>(*this); }
EthLinkClient::SpeedAndDuplexType EthLinkClient::getSpeedAndDuplex() const
{
    return call<&EthLinkClient::getSpeedAndDuplex>(*this);
}
EthLinkClient::InterfaceAssignmentType EthLinkClient::getInterfaceAssignment() const
{
    return call<&EthLinkClient::getInterfaceAssignment>(*this);
}
EthLinkClient::EthernetLinkType EthLinkClient::getEthernetLinkType() const
{
    return call<&EthLinkClient::getEthernetLinkType>(*this);
}
void EthLinkClient::setPacketSize(long const& size) const { call<&EthLinkClient::setPacketSize>(*this, size); }
void EthLinkClient::setAccFrameType(AccFrameType const& type) const
{
    call<&EthLinkClient::setAccFrameType>(*this, type);
}
void EthLinkClient::setShapedBw(long const& bandwidth) const { call<&EthLinkClient::setShapedBw>(*this, bandwidth); }
void EthLinkClient::setTransmissionMode(TransmissionMode const& mode) const
{
    call<&EthLinkClient::setTransmissionMode>(*this, mode);
}
void EthLinkClient::setDriverInfo(DriverInfo const& info) const { call<&EthLinkClient::setDriverInfo>(*this, info); }
void EthLinkClient::setSpeedAndDuplex(SpeedAndDuplexType const& setting) const
{
    call<&EthLinkClient::setSpeedAndDuplex>(*this, setting);
}
void EthLinkClient::setInterfaceAssignment(InterfaceAssignmentType const& assignment) const
{
    call<&EthLinkClient::setInterfaceAssignment>(*this, assignment);
}
void EthLinkClient::attachVlanTags(TipprmiSequence<unsigned short> const& tags) const
{
    call<&EthLinkClient::attachVlanTags>(*this, tags);
}
void EthLinkClient::detachVlanTags(TipprmiSequence<unsigned short> const& tags) const
{
    call<&EthLinkClient::detachVlanTags>(*this, tags);
}
