// HwmItemClient: a piece of hardware of the transport unit; handed out as one of the classes that derive from it.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// The base of HwmUnitClient and HwmModuleClient. Out-arguments count only when the status is OK.
class HwmItemClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<HwmItemClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the slot that the item is in; 0 when the call fails.
    virtual long getSlotNumber() const;
    // Reads the type of hardware that is expected.
    virtual ResponseInfo<GetClient> getExpectedHwType(std::string& type) const;
    // Reads the type of hardware that is there.
    virtual ResponseInfo<GetClient> getActualHwType(std::string& type) const;
    // Reads the hardware's revision.
    virtual ResponseInfo<GetClient> getHwRevision(std::string& revision) const;
    // Reads which software the hardware is compatible with.
    virtual ResponseInfo<GetClient> getHwSwCompatibility(std::string& compatibility) const;
    // Reads the serial number.
    virtual ResponseInfo<GetClient> getSerialNumber(std::string& number) const;
    // Reads the date of manufacture.
    virtual ResponseInfo<GetClient> getManufacturingDate(std::string& date) const;
    // Reads the version of the active software.
    virtual ResponseInfo<GetClient> getActiveSwVersion(std::string& version) const;
    // Reads the version of the upgrade protocol that the active software speaks.
    virtual ResponseInfo<GetClient> getActiveSwUpgradeProtVersion(unsigned long& version) const;
    // Reads the version of the fallback software.
    virtual ResponseInfo<GetClient> getFallbackSwVersion(std::string& version) const;
    // Reads the version of the upgrade protocol that the fallback software speaks.
    virtual ResponseInfo<GetClient> getFallbackSwUpgradeProtVersion(unsigned long& version) const;
    // Reads further data of the item; what it holds, the server decides.
    virtual ResponseInfo<GetClient> getSupplementaryData(std::string& data) const;
    // Reads how the item's registration ended; the server decides what the values mean.
    virtual ResponseInfo<GetClient> getRegistrationResult(unsigned long& result) const;
    // Reads whether the item is running.
    virtual ResponseInfo<GetClient> getRunning(bool& running) const;
};

template <>
struct Operations<HwmItemClient>
    : OperationList<HwmItemClient, 0x03603fd9, Operation<0, &HwmItemClient::getSlotNumber>,
                    Operation<1, &HwmItemClient::getExpectedHwType>, Operation<2, &HwmItemClient::getActualHwType>,
                    Operation<3, &HwmItemClient::getHwRevision>, Operation<4, &HwmItemClient::getHwSwCompatibility>,
                    Operation<5, &HwmItemClient::getSerialNumber>, Operation<6, &HwmItemClient::getManufacturingDate>,
                    Operation<7, &HwmItemClient::getActiveSwVersion>,
                    Operation<8, &HwmItemClient::getActiveSwUpgradeProtVersion>,
                    Operation<9, &HwmItemClient::getFallbackSwVersion>,
                    Operation<10, &HwmItemClient::getFallbackSwUpgradeProtVersion>,
                    Operation<11, &HwmItemClient::getSupplementaryData>,
                    Operation<12, &HwmItemClient::getRegistrationResult>, Operation<13, &HwmItemClient::getRunning>> {};
