#include "clients/transmission/AtmTrafficDescriptorClient.h"

#include "rmi/Call.h"

AtmTrafficDescriptorClient::ClientSpecificMetaObject AtmTrafficDescriptorClient::oMeta;
TreflectMetaObject* AtmTrafficDescriptorClient::staticMeta() { return oMeta.completed(); }

std::string AtmTrafficDescriptorClient::getUserLabel() const
{
    return call<&AtmTrafficDescriptorClient::getUserLabel>(*this);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setUserLabel(std::string const& label) const
{
    return call<&AtmTrafficDescriptorClient::setUserLabel>(*this, label);
}
std::string AtmTrafficDescriptorClient::getNmaLabel() const
{
    return call<&AtmTrafficDescriptorClient::getNmaLabel>(*this);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setNmaLabel(std::string const& label) const
{
    return call<&AtmTrafficDescriptorClient::setNmaLabel>(*this, label);
}
unsigned long AtmTrafficDescriptorClient::getServiceCat() const
{
    return call<&AtmTrafficDescriptorClient::getServiceCat>(*this);
}
unsigned long AtmTrafficDescriptorClient::getConformanceDefinition() const
{
    return call<&AtmTrafficDescriptorClient::getConformanceDefinition>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressPeakCellRateClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getEgressPeakCellRateClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressPeakCellRateClp0() const
{
    return call<&AtmTrafficDescriptorClient::getEgressPeakCellRateClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressPeakCellRateClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getIngressPeakCellRateClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressPeakCellRateClp0() const
{
    return call<&AtmTrafficDescriptorClient::getIngressPeakCellRateClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressMinDesiredCellRateClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getEgressMinDesiredCellRateClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressMinDesiredCellRateClp0() const
{
    return call<&AtmTrafficDescriptorClient::getEgressMinDesiredCellRateClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressMinDesiredCellRateClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getIngressMinDesiredCellRateClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressMinDesiredCellRateClp0() const
{
    return call<&AtmTrafficDescriptorClient::getIngressMinDesiredCellRateClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressClrClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getEgressClrClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressClrClp0() const
{
    return call<&AtmTrafficDescriptorClient::getEgressClrClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressClrClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getIngressClrClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressClrClp0() const
{
    return call<&AtmTrafficDescriptorClient::getIngressClrClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressCdvTolerancePcrClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getEgressCdvTolerancePcrClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressCdvTolerancePcrClp0() const
{
    return call<&AtmTrafficDescriptorClient::getEgressCdvTolerancePcrClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressCdvTolerancePcrClp0_1() const
{
    return call<&AtmTrafficDescriptorClient::getIngressCdvTolerancePcrClp0_1>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressCdvTolerancePcrClp0() const
{
    return call<&AtmTrafficDescriptorClient::getIngressCdvTolerancePcrClp0>(*this);
}
unsigned long AtmTrafficDescriptorClient::getEgressUbrShare() const
{
    return call<&AtmTrafficDescriptorClient::getEgressUbrShare>(*this);
}
unsigned long AtmTrafficDescriptorClient::getIngressUbrShare() const
{
    return call<&AtmTrafficDescriptorClient::getIngressUbrShare>(*this);
}
unsigned long AtmTrafficDescriptorClient::getOldEgressMinDesiredCellRate() const
{
    return call<&AtmTrafficDescriptorClient::getOldEgressMinDesiredCellRate>(*this);
}
unsigned long AtmTrafficDescriptorClient::getOldIngressMinDesiredCellRate() const
{
    return call<&AtmTrafficDescriptorClient::getOldIngressMinDesiredCellRate>(*this);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setServiceCat(unsigned long const& category) const
{
    return call<&AtmTrafficDescriptorClient::setServiceCat>(*this, category);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setConformanceDefinition(unsigned long const& definition) const
{
    return call<&AtmTrafficDescriptorClient::setConformanceDefinition>(*this, definition);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressPeakCellRateClp0_1(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setEgressPeakCellRateClp0_1>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressPeakCellRateClp0(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setEgressPeakCellRateClp0>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressPeakCellRateClp0_1(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setIngressPeakCellRateClp0_1>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressPeakCellRateClp0(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setIngressPeakCellRateClp0>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressMinDesiredCellRateClp0_1(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setEgressMinDesiredCellRateClp0_1>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressMinDesiredCellRateClp0(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setEgressMinDesiredCellRateClp0>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressMinDesiredCellRateClp0_1(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setIngressMinDesiredCellRateClp0_1>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressMinDesiredCellRateClp0(unsigned long const& rate) const
{
    return call<&AtmTrafficDescriptorClient::setIngressMinDesiredCellRateClp0>(*this, rate);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressClrClp0_1(unsigned long const& exponent) const
{
    return call<&AtmTrafficDescriptorClient::setEgressClrClp0_1>(*this, exponent);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressClrClp0(unsigned long const& exponent) const
{
    return call<&AtmTrafficDescriptorClient::setEgressClrClp0>(*this, exponent);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressClrClp0_1(unsigned long const& exponent) const
{
    return call<&AtmTrafficDescriptorClient::setIngressClrClp0_1>(*this, exponent);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressClrClp0(unsigned long const& exponent) const
{
    return call<&AtmTrafficDescriptorClient::setIngressClrClp0>(*this, exponent);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressCdvTolerancePcrClp0_1(unsigned long const& tolerance) const
{
    return call<&AtmTrafficDescriptorClient::setEgressCdvTolerancePcrClp0_1>(*this, tolerance);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressCdvTolerancePcrClp0(unsigned long const& tolerance) const
{
    return call<&AtmTrafficDescriptorClient::setEgressCdvTolerancePcrClp0>(*this, tolerance);
}
ResponseInfo<SetClient>
AtmTrafficDescriptorClient::setIngressCdvTolerancePcrClp0_1(unsigned long const& tolerance) const
{
    return call<&AtmTrafficDescriptorClient::setIngressCdvTolerancePcrClp0_1>(*this, tolerance);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressCdvTolerancePcrClp0(unsigned long const& tolerance) const
{
    return call<&AtmTrafficDescriptorClient::setIngressCdvTolerancePcrClp0>(*this, tolerance);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setEgressUbrShare(unsigned long const& share) const
{
    return call<&AtmTrafficDescriptorClient::setEgressUbrShare>(*this, share);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::setIngressUbrShare(unsigned long const& share) const
{
    return call<&AtmTrafficDescriptorClient::setIngressUbrShare>(*this, share);
}
unsigned long AtmTrafficDescriptorClient::internalAddReference() const
{
    return call<&AtmTrafficDescriptorClient::internalAddReference>(*this);
}
unsigned long AtmTrafficDescriptorClient::internalReleaseReference() const
{
    return call<&AtmTrafficDescriptorClient::internalReleaseReference>(*this);
}
ResponseInfo<SetClient> AtmTrafficDescriptorClient::keepCurrentMdcr() const
{
    return call<&AtmTrafficDescriptorClient::keepCurrentMdcr>(*this);
}
bool AtmTrafficDescriptorClient::isLike(InitValues const& values) const
{
    return call<&AtmTrafficDescriptorClient::isLike>(*this, values);
}
