// Mlp3LinkDescriptorClient: the PPP options of a multilink member link, handed out by
// Mlp3LinkClient::getLinkDescriptor().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// Only tells the options; nothing here sets them. Not an application object, unlike the other multilink objects.
// Results are zero or false when the call fails: zero is a value too for the authentication and the FCS.
class Mlp3LinkDescriptorClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    Mlp3LinkDescriptorClient() = default;
    explicit Mlp3LinkDescriptorClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<Mlp3LinkDescriptorClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The largest packet, in octets; the proxy does not check it.
    static constexpr short PACKETSIZE_MAX = 1500;
    // Kinds of authentication.
    static constexpr short AUTHENTICATION_PROTOCOL_NONE = 0;
    static constexpr short AUTHENTICATION_PROTOCOL_PASSWORD = 1;
    static constexpr short AUTHENTICATION_PROTOCOL_HANDSHAKE = 2;
    // Lengths of the frame check sequence (FCS): none, 16 or 32 bits. These are codes, not numbers of bits.
    static constexpr short FCS0 = 0;
    static constexpr short FCS16 = 1;
    static constexpr short FCS32 = 2;

    // Reads the maximum receive unit (MRU), in octets.
    virtual short getMruSize() const;
    // Reads the kind of authentication, an AUTHENTICATION_PROTOCOL_ constant.
    virtual short getAuthentication() const;
    // Reads the length of the FCS, one of FCS0..FCS32.
    virtual short getFcsFieldLength() const;
    // Reads whether the MRU is negotiated.
    virtual bool getMruSizeNegotiationOn() const;
    // Reads whether long sequence numbers are used.
    virtual bool getLongSequenceNrOn() const;
    // Reads whether the quality of the link is controlled.
    virtual bool getLinkQualityControlOn() const;
    // Reads whether magic numbers are used.
    virtual bool getMagicNumberOn() const;
    // Reads whether the protocol field is compressed.
    virtual bool getProtocolFieldCompressionOn() const;
    // Reads whether the endpoint discriminator is used.
    virtual bool getEndPointDiscriminatorOn() const;
    // Reads whether identification packets are sent.
    virtual bool getSendIdentificationPacketsOn() const;
};

template <>
struct Operations<Mlp3LinkDescriptorClient>
    : OperationList<Mlp3LinkDescriptorClient, 0x3585328c, Operation<0, &Mlp3LinkDescriptorClient::getMruSize>,
                    Operation<1, &Mlp3LinkDescriptorClient::getAuthentication>,
                    Operation<2, &Mlp3LinkDescriptorClient::getFcsFieldLength>,
                    Operation<3, &Mlp3LinkDescriptorClient::getMruSizeNegotiationOn>,
                    Operation<4, &Mlp3LinkDescriptorClient::getLongSequenceNrOn>,
                    Operation<5, &Mlp3LinkDescriptorClient::getLinkQualityControlOn>,
                    Operation<6, &Mlp3LinkDescriptorClient::getMagicNumberOn>,
                    Operation<7, &Mlp3LinkDescriptorClient::getProtocolFieldCompressionOn>,
                    Operation<8, &Mlp3LinkDescriptorClient::getEndPointDiscriminatorOn>,
                    Operation<9, &Mlp3LinkDescriptorClient::getSendIdentificationPacketsOn>> {};
