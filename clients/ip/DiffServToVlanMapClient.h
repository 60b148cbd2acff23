// DiffServToVlanMapClient: the DiffServ-to-VLAN map of the IP node, handed out by IpNodeClient::getDiffServToVlanMap().
#pragma once

#include "clients/ip/DsvmEntryClient.h"
#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiSequence.h"

// A switch and a list of entries, which is read as objects and written as values. Not an application object. All
// operations report a status; out-arguments count only when it is OK.
class DiffServToVlanMapClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    DiffServToVlanMapClient() = default;
    explicit DiffServToVlanMapClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<DiffServToVlanMapClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads whether the map is in use.
    virtual ResponseInfo<GetClient> getEnabled(bool& enabled) const;
    // Sets whether the map is in use.
    virtual ResponseInfo<SetClient> setEnabled(bool const& enabled) const;
    // Reads the entries, an object each; there may be none.
    virtual ResponseInfo<GetClient> getVlanMapSequence(TipprmiSequence<DsvmEntryClient>& entries) const;
    // Sets the entries, given as values.
    virtual ResponseInfo<SetClient> setVlanMapSequence(TipprmiSequence<DsvmEntryClient::values> const& entries) const;
};

template <>
struct Operations<DiffServToVlanMapClient>
    : OperationList<DiffServToVlanMapClient, 0x7ca4615e, Operation<0, &DiffServToVlanMapClient::getEnabled>,
                    Operation<1, &DiffServToVlanMapClient::setEnabled>,
                    Operation<2, &DiffServToVlanMapClient::getVlanMapSequence>,
                    Operation<3, &DiffServToVlanMapClient::setVlanMapSequence>> {};
