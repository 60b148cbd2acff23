// AtmIfNetClient: an IP interface over an AAL5 channel, made by IpNodeClient::createAtmIfNet() and handed out by it, by
// getAtmIfNet() and by getAtmIfNetSequence().
#pragma once

#include "clients/ip/IfNetClient.h"
#include "clients/transmission/Aal5VirtualChannelTrailTpClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Tells how packets go into the channel and where it leads. Out-arguments count only when the status is OK; operations
// with a plain result return an unbound proxy, zero or false when the call fails.
class AtmIfNetClient : public IfNetClient {
public:
    using Parent = IfNetClient;
    using IfNetClient::IfNetClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AtmIfNetClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads whether LLC/SNAP encapsulation is used.
    virtual ResponseInfo<GetClient> getLlcSnap(bool& llcSnap) const;
    // Sets whether LLC/SNAP encapsulation is used.
    virtual ResponseInfo<SetClient> setLlcSnap(bool const& llcSnap) const;
    // Reads the AAL5 trail that carries the interface.
    virtual Aal5VirtualChannelTrailTpClient getVcTtp() const;
    // Reads the IPv4 address of the destination: one number of 32 bits, not an array of octets.
    virtual unsigned long getDestIp() const;
    // Reads the status of ATM address resolution (ATMARP).
    virtual bool getAtmarpStatus() const;
    // Records parameters of the device; what the three mean, the server decides.
    virtual ResponseInfo<SetClient> recordDeviceParams(unsigned short const& value1, std::string const& text,
                                                       short const& value2) const;
};

template <>
struct Operations<AtmIfNetClient>
    : OperationList<AtmIfNetClient, 0x5210ed4c, Operation<0, &AtmIfNetClient::getLlcSnap>,
                    Operation<1, &AtmIfNetClient::setLlcSnap>, Operation<2, &AtmIfNetClient::getVcTtp>,
                    Operation<3, &AtmIfNetClient::getDestIp>, Operation<4, &AtmIfNetClient::getAtmarpStatus>,
                    Operation<5, &AtmIfNetClient::recordDeviceParams>> {};
