// DhcpAccessClient: the address assignment (DHCP) service of the IP node, handed out by
// IpNodeClient::getDhcpAccess().
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Keeps configuration entries by client identifier, hardware address or address range, and tells the public address
// and mask. Three operations begin with a capital letter; so do their names in the interface. Addresses and masks are
// IPv4, an octet per element.
class DhcpAccessClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<DhcpAccessClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The name of the service.
    static std::string const NAME;

    // Which of the three identifications an entry uses; the server decides what the values mean.
    enum DhcpConfigurationInfoIdentifier : int {
        DHCP_CONFIGURATION_INFO_IDENTIFIER_0 = 0,
    };
    // A lease time. The server decides what the three values mean; the names follow position.
    struct DhcpLeaseTime {
        unsigned long value1;
        unsigned long value2;
        unsigned long value3;
    };
    // Identification by client identifier.
    struct ClientIdentifier {
        std::string identifier;
        TipprmiArray<short, 4> address;
    };
    // Identification by hardware address.
    struct HardwareIdentifier {
        TipprmiArray<short, 6> hardwareAddress; // an octet per element
        TipprmiArray<short, 4> address;
    };
    // Identification by address range.
    struct RangeIdentifier {
        TipprmiArray<short, 4> first;
        TipprmiArray<short, 4> last;
    };
    // One configuration entry. All three identifications travel, whichever one it uses.
    struct DhcpConfigurationInfo {
        DhcpConfigurationInfoIdentifier identifier;
        DhcpLeaseTime leaseTime;
        ClientIdentifier clientIdentifier;
        HardwareIdentifier hardwareIdentifier;
        RangeIdentifier rangeIdentifier;
    };

    // Adds an entry.
    virtual ResponseInfo<SetClient> createDhcpConfigurationEntry(DhcpConfigurationInfo const& entry) const;
    // Removes the entry that an address names.
    virtual ResponseInfo<SetClient> deleteDhcpConfigurationEntry(TipprmiArray<short, 4> const& address) const;
    // Reads all entries; they count only when the status is OK.
    virtual ResponseInfo<GetClient> getDhcpConfiguration(TipprmiSequence<DhcpConfigurationInfo>& entries) const;
    // Reads the public address; `address` is left as it was when the call fails.
    virtual void GetPublicIpAddress(TipprmiArray<short, 4>& address) const;
    // Reads the mask of the public address; `mask` is left as it was when the call fails.
    virtual void GetPublicIpMask(TipprmiArray<short, 4>& mask) const;
    // Tells the service that the configuration changed and that it is to initialise itself; no answer.
    virtual void NotifyConfigChangeAndInit() const;
};

template <>
struct RecordFields<DhcpAccessClient::DhcpLeaseTime>
    : Fields<&DhcpAccessClient::DhcpLeaseTime::value1, &DhcpAccessClient::DhcpLeaseTime::value2,
             &DhcpAccessClient::DhcpLeaseTime::value3> {};

template <>
struct RecordFields<DhcpAccessClient::ClientIdentifier>
    : Fields<&DhcpAccessClient::ClientIdentifier::identifier, &DhcpAccessClient::ClientIdentifier::address> {};

template <>
struct RecordFields<DhcpAccessClient::HardwareIdentifier>
    : Fields<&DhcpAccessClient::HardwareIdentifier::hardwareAddress, &DhcpAccessClient::HardwareIdentifier::address> {};

template <>
struct RecordFields<DhcpAccessClient::RangeIdentifier>
    : Fields<&DhcpAccessClient::RangeIdentifier::first, &DhcpAccessClient::RangeIdentifier::last> {};

template <>
struct RecordFields<DhcpAccessClient::DhcpConfigurationInfo>
    : Fields<&DhcpAccessClient::DhcpConfigurationInfo::identifier, &DhcpAccessClient::DhcpConfigurationInfo::leaseTime,
             &DhcpAccessClient::DhcpConfigurationInfo::clientIdentifier,
             &DhcpAccessClient::DhcpConfigurationInfo::hardwareIdentifier,
             &DhcpAccessClient::DhcpConfigurationInfo::rangeIdentifier> {};

template <>
struct Operations<DhcpAccessClient>
    : OperationList<DhcpAccessClient, 0x916b14a2, Operation<0, &DhcpAccessClient::createDhcpConfigurationEntry>,
                    Operation<1, &DhcpAccessClient::deleteDhcpConfigurationEntry>,
                    Operation<2, &DhcpAccessClient::getDhcpConfiguration>,
                    Operation<3, &DhcpAccessClient::GetPublicIpAddress>,
                    Operation<4, &DhcpAccessClient::GetPublicIpMask>,
                    Operation<5, &DhcpAccessClient::NotifyConfigChangeAndInit>> {};
