#include "clients/ip/NtpAccessClient.h"

#include "rmi/Call.h"

NtpAccessClient::ClientSpecificMetaObject NtpAccessClient::oMeta;
TreflectMetaObject* NtpAccessClient::staticMeta() { return oMeta.completed(); }

ResponseInfo<GetClient> NtpAccessClient::getTimeZone(Time& timeZone) const
{
    return call<&NtpAccessClient::getTimeZone>(*this, timeZone);
}
ResponseInfo<SetClient> NtpAccessClient::setTimeZone(Time const& timeZone) const
{
    return call<&NtpAccessClient::setTimeZone>(*this, timeZone);
}
ResponseInfo<GetClient> NtpAccessClient::getNtpServerSequence(TipprmiSequence<NtpServer>& servers) const
{
    return call<&NtpAccessClient::getNtpServerSequence>(*this, servers);
}
ResponseInfo<SetClient> NtpAccessClient::setNtpDaemonStatus(TipprmiSequence<NtpServerStatus> const& statuses) const
{
    return call<&NtpAccessClient::setNtpDaemonStatus>(*this, statuses);
}
ResponseInfo<GetClient> NtpAccessClient::getNtpEnabled(bool& enabled) const
{
    return call<&NtpAccessClient::getNtpEnabled>(*this, enabled);
}
ResponseInfo<SetClient> NtpAccessClient::setNtpEnabled(bool const& enabled) const
{
    return call<&NtpAccessClient::setNtpEnabled>(*this, enabled);
}
ResponseInfo<RunClient> NtpAccessClient::createNtpServer(TipprmiArray<short, 4> const& address,
                                                         short const& value) const
{
    return call<&NtpAccessClient::createNtpServer>(*this, address, value);
}
ResponseInfo<RunClient> NtpAccessClient::deleteNtpServer(TipprmiArray<short, 4> const& address) const
{
    return call<&NtpAccessClient::deleteNtpServer>(*this, address);
}
ResponseInfo<GetClient> NtpAccessClient::getNtpDaemon(TipprmiSequence<NtpServer>& servers) const
{
    return call<&NtpAccessClient::getNtpDaemon>(*this, servers);
}
ResponseInfo<SetClient> NtpAccessClient::setNtpDaemon(TipprmiSequence<NtpServer> const& servers) const
{
    return call<&NtpAccessClient::setNtpDaemon>(*this, servers);
}
