// NtpAccessClient: the network time service of the IP node, handed out by IpNodeClient::getNtpAccess().
#pragma once

#include "clients/ip/Time.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

// Keeps the time zone, the NTP servers, and the list of servers that the NTP daemon works with. All operations report
// a status; out-arguments count only when it is OK. Addresses are IPv4, an octet per element.
class NtpAccessClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<NtpAccessClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // How many NTP servers the service holds at most.
    static constexpr short MAX_NTPSERVERS = 3;
    // A number of the service's performance monitoring; the server decides what it stands for.
    static constexpr int PM_INTERVAL_LENGTH = 1;

    // The status of an NTP server; the server decides what the values mean.
    enum NtpServerStatus : int {
        NTP_SERVER_STATUS_0 = 0,
    };
    // One NTP server. The server of this interface decides what the three numbers mean; the names follow position.
    struct NtpServer {
        TipprmiArray<short, 4> address;
        short value1;
        NtpServerStatus status;
        short value2;
        short value3;
    };

    // Reads the time zone.
    virtual ResponseInfo<GetClient> getTimeZone(Time& timeZone) const;
    // Sets the time zone.
    virtual ResponseInfo<SetClient> setTimeZone(Time const& timeZone) const;
    // Reads the NTP servers.
    virtual ResponseInfo<GetClient> getNtpServerSequence(TipprmiSequence<NtpServer>& servers) const;
    // Sets the daemon's status, a sequence of server statuses.
    virtual ResponseInfo<SetClient> setNtpDaemonStatus(TipprmiSequence<NtpServerStatus> const& statuses) const;
    // Reads whether NTP is enabled.
    virtual ResponseInfo<GetClient> getNtpEnabled(bool& enabled) const;
    // Sets whether NTP is enabled.
    virtual ResponseInfo<SetClient> setNtpEnabled(bool const& enabled) const;
    // Adds an NTP server by its address; what the number means, the server of this interface decides.
    virtual ResponseInfo<RunClient> createNtpServer(TipprmiArray<short, 4> const& address, short const& value) const;
    // Removes the NTP server of that address.
    virtual ResponseInfo<RunClient> deleteNtpServer(TipprmiArray<short, 4> const& address) const;
    // Reads the daemon's list of servers.
    virtual ResponseInfo<GetClient> getNtpDaemon(TipprmiSequence<NtpServer>& servers) const;
    // Sets the daemon's list of servers: 0..MAX_NTPSERVERS entries.
    virtual ResponseInfo<SetClient> setNtpDaemon(TipprmiSequence<NtpServer> const& servers) const;
};

template <>
struct RecordFields<NtpAccessClient::NtpServer>
    : Fields<&NtpAccessClient::NtpServer::address, &NtpAccessClient::NtpServer::value1,
             &NtpAccessClient::NtpServer::status, &NtpAccessClient::NtpServer::value2,
             &NtpAccessClient::NtpServer::value3> {};

template <>
struct Operations<NtpAccessClient>
    : OperationList<NtpAccessClient, 0x842c0cbb, Operation<0, &NtpAccessClient::getTimeZone>,
                    Operation<1, &NtpAccessClient::setTimeZone>, Operation<2, &NtpAccessClient::getNtpServerSequence>,
                    Operation<3, &NtpAccessClient::setNtpDaemonStatus>, Operation<4, &NtpAccessClient::getNtpEnabled>,
                    Operation<5, &NtpAccessClient::setNtpEnabled>, Operation<6, &NtpAccessClient::createNtpServer>,
                    Operation<7, &NtpAccessClient::deleteNtpServer>, Operation<8, &NtpAccessClient::getNtpDaemon>,
                    Operation<9, &NtpAccessClient::setNtpDaemon>> {};
