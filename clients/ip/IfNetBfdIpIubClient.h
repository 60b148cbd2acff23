// IfNetBfdIpIubClient: the settings of bidirectional forwarding detection (BFD) of one IP interface, handed out by
// EthIfNetClient::getIfNetBfdIpIub() and VlanIfNetClient::getIfNetBfdIpIub().
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"

#include <string>

// Has two destinations, each with an activation and an administrative flag of its own; the source UDP port, the port
// type and the timer set serve both. All operations report a status; out-arguments count only when it is OK.
class IfNetBfdIpIubClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<IfNetBfdIpIubClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The bounds and the step of the interval of the BFD timer, for callers; the proxy checks nothing.
    static constexpr int BFDTI_MIN = 500;
    static constexpr int BFDTI_MAX = 5000;
    static constexpr int BFDTI_STEP = 500;
    // The bounds of the factor of the BFD timer; it has no step.
    static constexpr int BFDTF_MIN = 2;
    static constexpr int BFDTF_MAX = 10;
    // The identifier of an interface's BFD object.
    static std::string const IFNET_BFD_IP_IUB_OID;

    // The timer set, intervals and a factor; the server decides which is which.
    struct BfdTimer {
        long value1;
        long value2;
        long value3;
    };
    // The kind of UDP port used for BFD; the server decides what the values mean.
    enum BfdTypePort : int {
        BFD_TYPE_PORT_0 = 0,
    };

    // Reads the source UDP port.
    virtual ResponseInfo<GetClient> getBfdSourceUdpPort(unsigned short& port) const;
    // Sets the source UDP port.
    virtual ResponseInfo<SetClient> setBfdSourceUdpPort(unsigned short const& port) const;
    // Reads the kind of UDP port.
    virtual ResponseInfo<GetClient> getBfdTypeUdpPort(BfdTypePort& type) const;
    // Sets the kind of UDP port.
    virtual ResponseInfo<SetClient> setBfdTypeUdpPort(BfdTypePort const& type) const;
    // Reads whether the supervision of the first destination is activated.
    virtual ResponseInfo<GetClient> getBfdActivation(bool& activated) const;
    // Sets whether the supervision of the first destination is activated.
    virtual ResponseInfo<SetClient> setBfdActivation(bool const& activated) const;
    // Reads the address of the first destination, an octet per element.
    virtual ResponseInfo<GetClient> getBfdDestAddress(TipprmiArray<short, 4>& address) const;
    // Sets the address of the first destination, an octet per element.
    virtual ResponseInfo<SetClient> setBfdDestAddress(TipprmiArray<short, 4> const& address) const;
    // Reads whether the supervision of the first destination is administratively up.
    virtual ResponseInfo<GetClient> getBfdAdminUp(bool& up) const;
    // Sets whether the supervision of the first destination is administratively up.
    virtual ResponseInfo<SetClient> setBfdAdminUp(bool const& up) const;
    // Reads whether the supervision of the second destination is activated.
    virtual ResponseInfo<GetClient> getBfdActivation2(bool& activated) const;
    // Sets whether the supervision of the second destination is activated.
    virtual ResponseInfo<SetClient> setBfdActivation2(bool const& activated) const;
    // Reads the address of the second destination, an octet per element.
    virtual ResponseInfo<GetClient> getBfdDestAddress2(TipprmiArray<short, 4>& address) const;
    // Sets the address of the second destination, an octet per element.
    virtual ResponseInfo<SetClient> setBfdDestAddress2(TipprmiArray<short, 4> const& address) const;
    // Reads whether the supervision of the second destination is administratively up.
    virtual ResponseInfo<GetClient> getBfdAdminUp2(bool& up) const;
    // Sets whether the supervision of the second destination is administratively up.
    virtual ResponseInfo<SetClient> setBfdAdminUp2(bool const& up) const;
    // Reads the timer set.
    virtual ResponseInfo<GetClient> getBfdTimer(BfdTimer& timer) const;
    // Sets the timer set, of which each is 0 or BFDTF_MIN..BFDTF_MAX or BFDTI_MIN..BFDTI_MAX step BFDTI_STEP.
    virtual ResponseInfo<SetClient> setBfdTimer(BfdTimer const& timer) const;
};

template <>
struct RecordFields<IfNetBfdIpIubClient::BfdTimer>
    : Fields<&IfNetBfdIpIubClient::BfdTimer::value1, &IfNetBfdIpIubClient::BfdTimer::value2,
             &IfNetBfdIpIubClient::BfdTimer::value3> {};

template <>
struct Operations<IfNetBfdIpIubClient>
    : OperationList<
          IfNetBfdIpIubClient, 0x4c642b02, Operation<0, &IfNetBfdIpIubClient::getBfdSourceUdpPort>,
          Operation<1, &IfNetBfdIpIubClient::setBfdSourceUdpPort>,
          Operation<2, &IfNetBfdIpIubClient::getBfdTypeUdpPort>, Operation<3, &IfNetBfdIpIubClient::setBfdTypeUdpPort>,
          Operation<4, &IfNetBfdIpIubClient::getBfdActivation>, Operation<5, &IfNetBfdIpIubClient::setBfdActivation>,
          Operation<6, &IfNetBfdIpIubClient::getBfdDestAddress>, Operation<7, &IfNetBfdIpIubClient::setBfdDestAddress>,
          Operation<8, &IfNetBfdIpIubClient::getBfdAdminUp>, Operation<9, &IfNetBfdIpIubClient::setBfdAdminUp>,
          Operation<10, &IfNetBfdIpIubClient::getBfdActivation2>,
          Operation<11, &IfNetBfdIpIubClient::setBfdActivation2>,
          Operation<12, &IfNetBfdIpIubClient::getBfdDestAddress2>,
          Operation<13, &IfNetBfdIpIubClient::setBfdDestAddress2>, Operation<14, &IfNetBfdIpIubClient::getBfdAdminUp2>,
          Operation<15, &IfNetBfdIpIubClient::setBfdAdminUp2>, Operation<16, &IfNetBfdIpIubClient::getBfdTimer>,
          Operation<17, &IfNetBfdIpIubClient::setBfdTimer>> {};
