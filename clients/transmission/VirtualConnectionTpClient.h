// VirtualConnectionTpClient: the termination point of a virtual ATM connection; handed out as the class that derives
// from it.
#pragma once

#include "clients/transmission/AtmPersistentObjectClient.h"
#include "clients/transmission/AtmTrafficDescriptorClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// The base of VirtualChannelConnectionTpClient. Results are zero, an unbound proxy or false when the call fails; those
// of the setting operations are the server's answers. Operations named internal are called like all others.
class VirtualConnectionTpClient : public AtmPersistentObjectClient {
public:
    using Parent = AtmPersistentObjectClient;
    using AtmPersistentObjectClient::AtmPersistentObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<VirtualConnectionTpClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the identifier of the termination point.
    virtual long getIdentifier() const;
    // Reads the traffic descriptor that is attached to the termination point.
    virtual AtmTrafficDescriptorClient getTrafficDescriptor() const;
    // Reads whether the termination point is a segment end point.
    virtual bool getSegmentEndPoint() const;
    // Reads whether the termination point is cross-connected.
    virtual bool isCrossConnected() const;
    // Reads whether a trail ends the connection here.
    virtual bool isTerminatedByTrail() const;
    // Attaches a traffic descriptor. Whether the server accepted it.
    virtual bool setTrafficDescriptor(AtmTrafficDescriptorClient const& descriptor) const;
    // Attaches a traffic descriptor, the internal way. Whether the server accepted it.
    virtual bool internalSetTrafficDescriptor(AtmTrafficDescriptorClient const& descriptor) const;
    // Sets whether the termination point is a segment end point. Whether the server accepted it.
    virtual bool internalSetSegmentEndPoint(bool const& endPoint) const;
};

template <>
struct Operations<VirtualConnectionTpClient>
    : OperationList<VirtualConnectionTpClient, 0x5b8d2e40, Operation<0, &VirtualConnectionTpClient::getIdentifier>,
                    Operation<1, &VirtualConnectionTpClient::getTrafficDescriptor>,
                    Operation<2, &VirtualConnectionTpClient::getSegmentEndPoint>,
                    Operation<3, &VirtualConnectionTpClient::isCrossConnected>,
                    Operation<4, &VirtualConnectionTpClient::isTerminatedByTrail>,
                    Operation<5, &VirtualConnectionTpClient::setTrafficDescriptor>,
                    Operation<6, &VirtualConnectionTpClient::internalSetTrafficDescriptor>,
                    Operation<7, &VirtualConnectionTpClient::internalSetSegmentEndPoint>> {};
