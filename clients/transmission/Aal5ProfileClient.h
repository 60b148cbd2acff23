// Aal5ProfileClient: an AAL5 profile that trail termination points share, handed out by
// Aal5VirtualChannelTrailTpClient::getAssociatedAalProfile().
#pragma once

#include "clients/transmission/AtmPersistentObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Tells the AAL mode, the type of the service specific convergence sublayer (SSCS) and the largest PDUs of the common
// part convergence sublayer (CPCS). Operations with a plain result return zero or an empty text when the call fails.
class Aal5ProfileClient : public AtmPersistentObjectClient {
public:
    using Parent = AtmPersistentObjectClient;
    using AtmPersistentObjectClient::AtmPersistentObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<Aal5ProfileClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // AAL modes.
    static constexpr int ASSURED_MESSAGE = 0;
    static constexpr int ASSURED_STREAMING = 1;
    static constexpr int UNASSURED_MESSAGE = 2;
    static constexpr int UNASSURED_STREAMING = 3;
    // SSCS types.
    static constexpr int SSCS_NULL = 0;
    static constexpr int ASSURED = 1;
    static constexpr int NON_ASSURED = 2;
    static constexpr int FRAME_RELAY = 3;
    static constexpr int HDLC = 4;
    // The longest NMA label.
    static constexpr int MAX_NMA_LABEL = 20;

    // Reads the label for the network management agent (NMA).
    virtual std::string getNmaLabel() const;
    // Sets the NMA label: 0..MAX_NMA_LABEL characters; the proxy does not check that.
    virtual ResponseInfo<SetClient> setNmaLabel(std::string const& label) const;
    // Reads the AAL mode, one of ASSURED_MESSAGE..UNASSURED_STREAMING.
    virtual long getAalMode() const;
    // Reads the SSCS type, one of SSCS_NULL..HDLC.
    virtual long getSscsType() const;
    // Reads the largest CPCS PDU in the forward direction, in octets.
    virtual long getMaxCpcsPduOctetNumberForward() const;
    // Reads the largest CPCS PDU in the backward direction, in octets.
    virtual long getMaxCpcsPduOctetNumberBackward() const;
    // Adds a reference to the profile. The count that the server answers.
    virtual unsigned long internalAddReference() const;
    // Releases a reference to the profile. The count that the server answers.
    virtual unsigned long internalReleaseReference() const;
};

template <>
struct Operations<Aal5ProfileClient>
    : OperationList<Aal5ProfileClient, 0xe6987bc9, Operation<0, &Aal5ProfileClient::getNmaLabel>,
                    Operation<1, &Aal5ProfileClient::setNmaLabel>, Operation<2, &Aal5ProfileClient::getAalMode>,
                    Operation<3, &Aal5ProfileClient::getSscsType>,
                    Operation<4, &Aal5ProfileClient::getMaxCpcsPduOctetNumberForward>,
                    Operation<5, &Aal5ProfileClient::getMaxCpcsPduOctetNumberBackward>,
                    Operation<6, &Aal5ProfileClient::internalAddReference>,
                    Operation<7, &Aal5ProfileClient::internalReleaseReference>> {};
