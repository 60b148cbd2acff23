#include "clients/ip/DsvmEntryClient.h"

#include "rmi/Call.h"

DsvmEntryClient::ClientSpecificMetaObject DsvmEntryClient::oMeta;
TreflectMetaObject* DsvmEntryClient::staticMeta() { return oMeta.completed(); }

std::string const DsvmEntryClient::MANAGEMENT_ALL = "MANAGEMENT_ALL";
std::string const DsvmEntryClient::CONTROL = "CONTROL";
std::string const DsvmEntryClient::REAL_TIME_USER_PLANE = "REAL_TIME_USER_PLANE";
std::string const DsvmEntryClient::NON_REAL_TIME_USER_PLANE = "NON_REAL_TIME_USER_PLANE";

bool DsvmEntryClient::init(values const& initial) const { return call<&DsvmEntryClient::init>(*this, initial); }
ResponseInfo<GetClient> DsvmEntryClient::getValues(values& current) const
{
    return call<&DsvmEntryClient::getValues>(*this, current);
}
