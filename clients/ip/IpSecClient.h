// IpSecClient: the IPsec switch of the IP node, handed out by IpNodeClient::getIpSec().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Not an application object. All operations report a status; out-arguments count only when it is OK.
class IpSecClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    IpSecClient() = default;
    explicit IpSecClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<IpSecClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the SLK identifier of IPsec.
    virtual ResponseInfo<GetClient> getIpSlkId(std::string& id) const;
    // Reads whether IPsec is enabled.
    virtual ResponseInfo<GetClient> getIpSecEnabled(bool& enabled) const;
    // Sets whether IPsec is enabled.
    virtual ResponseInfo<SetClient> setIpSecEnabled(bool const& enabled) const;
};

template <>
struct Operations<IpSecClient>
    : OperationList<IpSecClient, 0x5a355250, Operation<0, &IpSecClient::getIpSlkId>,
                    Operation<1, &IpSecClient::getIpSecEnabled>, Operation<2, &IpSecClient::setIpSecEnabled>> {};
