// Aal5VirtualChannelTrailTpClient: the end of a virtual channel where AAL5 assembles cells into frames, handed out by
// AtmIfNetClient::getVcTtp().
#pragma once

#include "clients/transmission/Aal5PmClient.h"
#include "clients/transmission/Aal5ProfileClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"
#include "clients/transmission/VirtualChannelTrailTpClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"

// Carries an ATM IP interface. Leads to the AAL5 profile and the AAL5 performance object. Operations with a plain
// result return an unbound proxy or false when the call fails.
class Aal5VirtualChannelTrailTpClient : public VirtualChannelTrailTpClient {
public:
    using Parent = VirtualChannelTrailTpClient;
    using VirtualChannelTrailTpClient::VirtualChannelTrailTpClient;

    using ClientSpecificMetaObject = ProxyMetaObject<Aal5VirtualChannelTrailTpClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // What init() takes. Proxies only send it.
    struct InitValues {
        long value; // the server decides what it means
        Aal5ProfileClient profile;
        VirtualChannelConnectionTpClient vccTp; // the termination point of the channel that the trail ends
    };

    // Reads the AAL5 profile.
    virtual Aal5ProfileClient getAssociatedAalProfile() const;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
    // Initialises the trail; the server's answer. Another operation than the base's init(), which it hides on purpose:
    // that one is called through the base class.
    virtual bool init(InitValues const& values) const;
#pragma GCC diagnostic pop
    // Switches performance monitoring of AAL5 on.
    virtual ResponseInfo<SetClient> enablePmForAAL() const;
    // Switches performance monitoring of AAL5 off.
    virtual ResponseInfo<SetClient> disablePmForAAL() const;
    // Reads the status of performance monitoring of AAL5. The status itself is the answer: a failed call cannot be told
    // from FAILED.
    virtual ResponseInfo<GetClient> getPmStatusForAAL() const;
    // Reads the AAL5 performance object.
    virtual Aal5PmClient getAal5Pm() const;
};

template <>
struct RecordFields<Aal5VirtualChannelTrailTpClient::InitValues>
    : Fields<&Aal5VirtualChannelTrailTpClient::InitValues::value, &Aal5VirtualChannelTrailTpClient::InitValues::profile,
             &Aal5VirtualChannelTrailTpClient::InitValues::vccTp> {};

template <>
inline constexpr bool isSentOnly<Aal5VirtualChannelTrailTpClient::InitValues> = true;

template <>
struct Operations<Aal5VirtualChannelTrailTpClient>
    : OperationList<Aal5VirtualChannelTrailTpClient, 0xa95f9234,
                    Operation<0, &Aal5VirtualChannelTrailTpClient::getAssociatedAalProfile>,
                    Operation<1, &Aal5VirtualChannelTrailTpClient::init>,
                    Operation<2, &Aal5VirtualChannelTrailTpClient::enablePmForAAL>,
                    Operation<3, &Aal5VirtualChannelTrailTpClient::disablePmForAAL>,
                    Operation<4, &Aal5VirtualChannelTrailTpClient::getPmStatusForAAL>,
                    Operation<5, &Aal5VirtualChannelTrailTpClient::getAal5Pm>> {};
