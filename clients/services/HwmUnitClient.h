// HwmUnitClient: the hardware of a transmission unit, handed out by TransmissionUnitClient::getHwmUnit().
#pragma once

#include "clients/services/HwmItemClient.h"
#include "clients/services/HwmLedClient.h"
#include "clients/services/HwmModuleClient.h"
#include "clients/services/HwmSensorClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// A hardware item that holds modules, an LED and a temperature sensor. Out-arguments count only when the status is OK.
class HwmUnitClient : public HwmItemClient {
public:
    using Parent = HwmItemClient;
    using HwmItemClient::HwmItemClient;

    using ClientSpecificMetaObject = ProxyMetaObject<HwmUnitClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the module of that number.
    virtual ResponseInfo<GetClient> getModule(long const& number, HwmModuleClient& module) const;
    // Creates a module of that number; what the description says, the server decides.
    virtual ResponseInfo<SetClient> createModule(long const& number, std::string const& description) const;
    // Deletes the module of that number.
    virtual ResponseInfo<SetClient> deleteModule(long const& number) const;
    // Reads the unit's LED.
    virtual ResponseInfo<GetClient> getLed(HwmLedClient& led) const;
    // Reads the unit's temperature sensor.
    virtual ResponseInfo<GetClient> getSensor(HwmSensorClient& sensor) const;
};

template <>
struct Operations<HwmUnitClient>
    : OperationList<HwmUnitClient, 0xc0c01694, Operation<0, &HwmUnitClient::getModule>,
                    Operation<1, &HwmUnitClient::createModule>, Operation<2, &HwmUnitClient::deleteModule>,
                    Operation<3, &HwmUnitClient::getLed>, Operation<4, &HwmUnitClient::getSensor>> {};
