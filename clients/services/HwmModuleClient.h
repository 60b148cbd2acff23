// HwmModuleClient: a module plugged into a hardware unit, handed out by HwmUnitClient::getModule().
#pragma once

#include "clients/services/HwmItemClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"

// A hardware item without operations of its own.
class HwmModuleClient : public HwmItemClient {
public:
    using Parent = HwmItemClient;
    using HwmItemClient::HwmItemClient;
    ~HwmModuleClient() override;

    using ClientSpecificMetaObject = ProxyMetaObject<HwmModuleClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();
};

template <>
struct Operations<HwmModuleClient> : OperationList<HwmModuleClient, 0x75fd82a0> {};
