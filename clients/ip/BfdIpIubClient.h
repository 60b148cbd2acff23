// BfdIpIubClient: the node-level supervision by bidirectional forwarding detection (BFD), well known as
// BFD_IP_IUB_OID and handed out by IpNodeClient::getBfdIpIub().
#pragma once

#include "clients/services/ConditionClient.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"

#include <string>

// Has one destination, its activation and administrative flags, a timer set and two fault conditions. The settings of
// single interfaces, with a second destination and UDP ports, are those of IfNetBfdIpIubClient.
class BfdIpIubClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<BfdIpIubClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The interval of the BFD timer.
    static constexpr int BFDTI_MIN = 500;
    static constexpr int BFDTI_MAX = 5000;
    static constexpr int BFDTI_STEP = 500;
    // The factor of the BFD timer.
    static constexpr int BFDTF_MIN = 2;
    static constexpr int BFDTF_MAX = 10;
    // The identifier of the node-level BFD object.
    static std::string const BFD_IP_IUB_OID;

    // The timer set, intervals and a factor; the server decides which is which. A type of its own, although
    // IfNetBfdIpIubClient::BfdTimer looks the same.
    struct BfdTimer {
        long value1;
        long value2;
        long value3;
    };

    // Reads whether the supervision is activated.
    virtual ResponseInfo<GetClient> getBfdActivation(bool& activated) const;
    // Sets whether the supervision is activated.
    virtual ResponseInfo<SetClient> setBfdActivation(bool const& activated) const;
    // Reads the address of the destination, an octet per element.
    virtual ResponseInfo<GetClient> getBfdDestAddress(TipprmiArray<short, 4>& address) const;
    // Sets the address of the destination, an octet per element.
    virtual ResponseInfo<SetClient> setBfdDestAddress(TipprmiArray<short, 4> const& address) const;
    // Reads whether the supervision is administratively up.
    virtual ResponseInfo<GetClient> getBfdAdminUp(bool& up) const;
    // Sets whether the supervision is administratively up.
    virtual ResponseInfo<SetClient> setBfdAdminUp(bool const& up) const;
    // Reads the timer set.
    virtual ResponseInfo<GetClient> getBfdTimer(BfdTimer& timer) const;
    // Sets the timer set, of which each is 0 or BFDTF_MIN..BFDTF_MAX or BFDTI_MIN..BFDTI_MAX step BFDTI_STEP.
    virtual ResponseInfo<SetClient> setBfdTimer(BfdTimer const& timer) const;
    // Reads the fault condition of the egress direction; unbound when the call fails.
    virtual ConditionClient getDownEgress() const;
    // Reads the fault condition of the ingress direction; unbound when the call fails.
    virtual ConditionClient getDownIngress() const;
};

template <>
struct RecordFields<BfdIpIubClient::BfdTimer>
    : Fields<&BfdIpIubClient::BfdTimer::value1, &BfdIpIubClient::BfdTimer::value2, &BfdIpIubClient::BfdTimer::value3> {
};

template <>
struct Operations<BfdIpIubClient>
    : OperationList<BfdIpIubClient, 0xc5fa8f46, Operation<0, &BfdIpIubClient::getBfdActivation>,
                    Operation<1, &BfdIpIubClient::setBfdActivation>, Operation<2, &BfdIpIubClient::getBfdDestAddress>,
                    Operation<3, &BfdIpIubClient::setBfdDestAddress>, Operation<4, &BfdIpIubClient::getBfdAdminUp>,
                    Operation<5, &BfdIpIubClient::setBfdAdminUp>, Operation<6, &BfdIpIubClient::getBfdTimer>,
                    Operation<7, &BfdIpIubClient::setBfdTimer>, Operation<8, &BfdIpIubClient::getDownEgress>,
                    Operation<9, &BfdIpIubClient::getDownIngress>> {};
