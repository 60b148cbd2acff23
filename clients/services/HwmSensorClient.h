// HwmSensorClient: the temperature sensor of a hardware unit, handed out by HwmUnitClient::getSensor().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Out-arguments count only when the status is OK. The server decides the unit of temperatures.
class HwmSensorClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    HwmSensorClient() = default;
    explicit HwmSensorClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<HwmSensorClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the sensor's name.
    virtual ResponseInfo<GetClient> getSensorName(std::string& name) const;
    // Reads the temperature.
    virtual ResponseInfo<GetClient> getTemperature(long& temperature) const;
    // Sets the temperature that the sensor tells.
    virtual ResponseInfo<SetClient> updateTemperature(long const& temperature) const;
};

template <>
struct Operations<HwmSensorClient>
    : OperationList<HwmSensorClient, 0xc55fb338, Operation<0, &HwmSensorClient::getSensorName>,
                    Operation<1, &HwmSensorClient::getTemperature>, Operation<2, &HwmSensorClient::updateTemperature>> {
};
