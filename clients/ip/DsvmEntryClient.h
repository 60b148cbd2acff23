// DsvmEntryClient: one entry of the DiffServ-to-VLAN map, handed out by DiffServToVlanMapClient::getVlanMapSequence().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Assigns a VLAN and a marking to a type of traffic. Not an application object.
class DsvmEntryClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    DsvmEntryClient() = default;
    explicit DsvmEntryClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<DsvmEntryClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Traffic types; each text is the constant's own name.
    static std::string const MANAGEMENT_ALL;
    static std::string const CONTROL;
    static std::string const REAL_TIME_USER_PLANE;
    static std::string const NON_REAL_TIME_USER_PLANE;

    // What an entry says.
    struct values {
        std::string trafficType; // one of MANAGEMENT_ALL..NON_REAL_TIME_USER_PLANE
        unsigned short vlanId;   // as EthIfNetClient::setVlanId()
        unsigned char marking;   // 0..63: a DiffServ code point (RFC 2474) or a VLAN priority, the server decides
    };

    // Gives the entry its values. The server's answer; false when the call fails.
    virtual bool init(values const& initial) const;
    // Reads the values; they count only when the status is OK.
    virtual ResponseInfo<GetClient> getValues(values& current) const;
};

template <>
struct RecordFields<DsvmEntryClient::values>
    : Fields<&DsvmEntryClient::values::trafficType, &DsvmEntryClient::values::vlanId,
             &DsvmEntryClient::values::marking> {};

template <>
struct Operations<DsvmEntryClient> : OperationList<DsvmEntryClient, 0x50b86c2a, Operation<0, &DsvmEntryClient::init>,
                                                   Operation<1, &DsvmEntryClient::getValues>> {};
