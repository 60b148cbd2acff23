// IfNetClient: an IP interface of whatever kind, handed out by IpNodeClient::getIfNet() and named in the entries of
// VlanMapClient.
#pragma once

#include "clients/services/ConditionClient.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// The base of EthIfNetClient, Ip3IfNetClient, VlanIfNetClient and AtmIfNetClient. Out-arguments count only when the
// status is OK; the fault conditions are unbound when the call fails. Addresses are arrays of octets (0 to 255), the
// first octet of the dotted form first.
class IfNetClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<IfNetClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Bits of the interface flags, with a double underscore; 0x1000, 0x2000 and 0x4000 have no name.
    static constexpr unsigned short IFF__UP = 0x0001;
    static constexpr unsigned short IFF__BROADCAST = 0x0002;
    static constexpr unsigned short IFF__DEBUG = 0x0004;
    static constexpr unsigned short IFF__LOOPBACK = 0x0008;
    static constexpr unsigned short IFF__POINTTOPOINT = 0x0010;
    static constexpr unsigned short IFF__NOTRAILERS = 0x0020;
    static constexpr unsigned short IFF__RUNNING = 0x0040;
    static constexpr unsigned short IFF__NOARP = 0x0080;
    static constexpr unsigned short IFF__PROMISC = 0x0100;
    static constexpr unsigned short IFF__ALLMULTI = 0x0200;
    static constexpr unsigned short IFF__OACTIVE = 0x0400;
    static constexpr unsigned short IFF__SIMPLEX = 0x0800;
    static constexpr unsigned short IFF__MULTICAST = 0x8000;

    // One address entry of an interface. The server decides what the second to fourth address mean.
    struct IpAddrInfo {
        TipprmiArray<short, 4> ipAddress; // in the first entry of the transport interface, that interface's address
        TipprmiArray<short, 4> address2;
        TipprmiArray<short, 4> address3;
        TipprmiArray<short, 4> address4;
    };

    // Reads the unit name.
    virtual ResponseInfo<GetClient> getUnitName(std::string& name) const;
    // Reads the unit number.
    virtual ResponseInfo<GetClient> getUnitNumber(short& number) const;
    // Reads the maximum transmission unit (MTU).
    virtual ResponseInfo<GetClient> getMtu(long& mtu) const;
    // Sets the MTU, in octets: 68..65535 (RFC 791).
    virtual ResponseInfo<SetClient> setMtu(long const& mtu) const;
    // Reads the internal MTU, a second one beside that of getMtu().
    virtual ResponseInfo<GetClient> getInternalMtu(long& mtu) const;
    // Sets the internal MTU: as setMtu().
    virtual ResponseInfo<SetClient> setInternalMtu(long const& mtu) const;
    // Reads the interface flags: IFF__ bits.
    virtual ResponseInfo<GetClient> getFlags(unsigned short& flags) const;
    // Sets the interface flags: IFF__ bits.
    virtual ResponseInfo<SetClient> setFlags(unsigned short const& flags) const;
    // Reads the discard switch of the private side.
    virtual ResponseInfo<GetClient> getDiscardPrivate(bool& discard) const;
    // Sets the discard switch of the private side.
    virtual ResponseInfo<SetClient> setDiscardPrivate(bool const& discard) const;
    // Reads the discard switch of the public side.
    virtual ResponseInfo<GetClient> getDiscardPublic(bool& discard) const;
    // Sets the discard switch of the public side.
    virtual ResponseInfo<SetClient> setDiscardPublic(bool const& discard) const;
    // Reads the address entries; there may be none.
    virtual ResponseInfo<GetClient> getIpAddrSequence(TipprmiSequence<IpAddrInfo>& addresses) const;
    // Sets the address entries.
    virtual ResponseInfo<SetClient> setIpAddrSequence(TipprmiSequence<IpAddrInfo> const& addresses) const;
    // Sets the private address.
    virtual ResponseInfo<SetClient> setPrivateIpAddr(IpAddrInfo const& address) const;
    // Reads the private address.
    virtual ResponseInfo<GetClient> getPrivateIpAddr(IpAddrInfo& address) const;
    // Sets the public address.
    virtual ResponseInfo<SetClient> setPublicIpAddr(IpAddrInfo const& address) const;
    // Reads the public address.
    virtual ResponseInfo<GetClient> getPublicIpAddr(IpAddrInfo& address) const;
    // Reads the VOK address used for SCTP.
    virtual ResponseInfo<GetClient> getVokIpForSctp(TipprmiArray<short, 4>& address) const;
    // Reads the fault condition of the egress direction being down.
    virtual ConditionClient getDownEgress() const;
    // Reads the fault condition of the ingress direction being down.
    virtual ConditionClient getDownIngress() const;
    // Reads the fault condition of the second egress direction being down.
    virtual ConditionClient getDownEgress2() const;
    // Reads the fault condition of the second ingress direction being down.
    virtual ConditionClient getDownIngress2() const;
    // Reads the common fault condition of bidirectional forwarding detection (BFD) being down.
    virtual ConditionClient getDownBfdCommon() const;
};

template <>
struct RecordFields<IfNetClient::IpAddrInfo>
    : Fields<&IfNetClient::IpAddrInfo::ipAddress, &IfNetClient::IpAddrInfo::address2,
             &IfNetClient::IpAddrInfo::address3, &IfNetClient::IpAddrInfo::address4> {};

template <>
struct Operations<IfNetClient>
    : OperationList<IfNetClient, 0xb86aeff7, Operation<0, &IfNetClient::getUnitName>,
                    Operation<1, &IfNetClient::getUnitNumber>, Operation<2, &IfNetClient::getMtu>,
                    Operation<3, &IfNetClient::setMtu>, Operation<4, &IfNetClient::getInternalMtu>,
                    Operation<5, &IfNetClient::setInternalMtu>, Operation<6, &IfNetClient::getFlags>,
                    Operation<7, &IfNetClient::setFlags>, Operation<8, &IfNetClient::getDiscardPrivate>,
                    Operation<9, &IfNetClient::setDiscardPrivate>, Operation<10, &IfNetClient::getDiscardPublic>,
                    Operation<11, &IfNetClient::setDiscardPublic>, Operation<12, &IfNetClient::getIpAddrSequence>,
                    Operation<13, &IfNetClient::setIpAddrSequence>, Operation<14, &IfNetClient::setPrivateIpAddr>,
                    Operation<15, &IfNetClient::getPrivateIpAddr>, Operation<16, &IfNetClient::setPublicIpAddr>,
                    Operation<17, &IfNetClient::getPublicIpAddr>, Operation<18, &IfNetClient::getVokIpForSctp>,
                    Operation<19, &IfNetClient::getDownEgress>, Operation<20, &IfNetClient::getDownIngress>,
                    Operation<21, &IfNetClient::getDownEgress2>, Operation<22, &IfNetClient::getDownIngress2>,
                    Operation<23, &IfNetClient::getDownBfdCommon>> {};
