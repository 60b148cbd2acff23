// VlanMapClient: the map of the seven traffic types to VLANs, handed out by IpNodeClient::getVlanMap().
#pragma once

#include "clients/ip/IfNetClient.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"

// Always read and written as a whole, an entry per traffic type.
class VlanMapClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<VlanMapClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The traffic types: indexes of the map.
    static constexpr short VT_CES = 0;
    static constexpr short VT_UP1 = 1;
    static constexpr short VT_UP2 = 2;
    static constexpr short VT_CP = 3;
    static constexpr short VT_MP = 4;
    static constexpr short VT_TOP = 5;
    static constexpr short VT_FPR = 6;

    // Where the traffic of one type goes.
    struct VlanMapEntryType {
        unsigned short vlanId; // as EthIfNetClient::setVlanId()
        IfNetClient ifNet;     // may be unbound
    };

    // Sets all entries.
    virtual ResponseInfo<SetClient> setVlanMap(TipprmiArray<VlanMapEntryType, 7> const& map) const;
    // Reads all entries; when the call fails, VLAN 0 and unbound interfaces.
    virtual TipprmiArray<VlanMapEntryType, 7> getVlanMap() const;
};

template <>
struct RecordFields<VlanMapClient::VlanMapEntryType>
    : Fields<&VlanMapClient::VlanMapEntryType::vlanId, &VlanMapClient::VlanMapEntryType::ifNet> {};

template <>
struct Operations<VlanMapClient> : OperationList<VlanMapClient, 0x89552756, Operation<0, &VlanMapClient::setVlanMap>,
                                                 Operation<1, &VlanMapClient::getVlanMap>> {};
