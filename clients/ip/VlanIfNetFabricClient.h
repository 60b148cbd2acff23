// VlanIfNetFabricClient: the factory and container of the VLAN interfaces of an Ethernet interface, handed out by
// EthIfNetClient::getVlanIfNetFabric().
#pragma once

#include "clients/ip/VlanIfNetClient.h"
#include "platform/QelFabricBaseClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Knows each interface by an index, a text. The number of interfaces and the list of indexes come from getSize() and
// getIndexes() of the base. No operation reports a status: interfaces returned are unbound and sequences empty when
// the call fails, and an index filled in counts only when the interface returned with it is bound.
class VlanIfNetFabricClient : public QelFabricBaseClient {
public:
    using Parent = QelFabricBaseClient;
    using QelFabricBaseClient::QelFabricBaseClient;

    using ClientSpecificMetaObject = ProxyMetaObject<VlanIfNetFabricClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The error of an invalid instance, for callers that represent it: no operation raises it.
    class QelInvalidInstanceI {
    public:
        QelInvalidInstanceI() = default;
        explicit QelInvalidInstanceI(VlanIfNetClient const& concerned) : vlanIfNet(concerned) {}

        VlanIfNetClient vlanIfNet; // the interface concerned
    };
    // The error of an instance that does not exist, for callers that represent it: no operation raises it.
    class QelNoSuchInstanceI {
    public:
        QelNoSuchInstanceI() = default;
        explicit QelNoSuchInstanceI(VlanIfNetClient const& concerned) : vlanIfNet(concerned) {}

        VlanIfNetClient vlanIfNet; // the interface concerned
    };

    // Finds the interface of an index.
    virtual VlanIfNetClient retrieve(std::string const& index) const;
    // Finds the first interface and tells its index.
    virtual VlanIfNetClient retrieveFirst(std::string& index) const;
    // Finds the interface that follows the one of `index` and tells its index.
    virtual VlanIfNetClient retrieveNext(std::string const& index, std::string& nextIndex) const;
    // Finds all interfaces.
    virtual TipprmiSequence<VlanIfNetClient> retrieveAll() const;
    // Creates an interface under an index of the caller's choice.
    virtual VlanIfNetClient create(std::string const& index,
                                   VlanIfNetClient::VlanIfNetCreateParams const& params) const;
    // Creates an interface and tells the index that the fabric gave it.
    virtual VlanIfNetClient createWithIndex(std::string& index,
                                            VlanIfNetClient::VlanIfNetCreateParams const& params) const;
    // Removes the interface of an index. A failure of the call is not reported.
    virtual void destroy(std::string const& index) const;
    // Removes the given interface. A failure of the call is not reported.
    virtual void destroyByInterface(VlanIfNetClient const& vlan) const;
};

template <>
struct Operations<VlanIfNetFabricClient>
    : OperationList<
          VlanIfNetFabricClient, 0xf39394f7, Operation<0, &VlanIfNetFabricClient::retrieve>,
          Operation<1, &VlanIfNetFabricClient::retrieveFirst>, Operation<2, &VlanIfNetFabricClient::retrieveNext>,
          Operation<3, &VlanIfNetFabricClient::retrieveAll>, Operation<4, &VlanIfNetFabricClient::create>,
          Operation<5, &VlanIfNetFabricClient::createWithIndex>, Operation<6, &VlanIfNetFabricClient::destroy>,
          Operation<7, &VlanIfNetFabricClient::destroyByInterface>> {};
