// TransmissionUnitClient: a plug-in unit that carries transmission interfaces, handed out by
// TransmissionIfClient::getTransmissionUnit() and TransmissionPortClient::getTransmissionUnitPtr().
#pragma once

#include "clients/services/HwmUnitClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "clients/transmission/PortBpData.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// The base of EthUnitClient and PdhUnitClient. Tells its hardware and slot and hands out addresses of its UTOPIA buses;
// the server keeps the reservations. Operations with a plain result return an unbound proxy, an empty text or zero when
// the call fails.
class TransmissionUnitClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<TransmissionUnitClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the hardware management object of the unit.
    virtual HwmUnitClient getHwmUnit() const;
    // Reads the hardware type.
    virtual std::string getHwmType() const;
    // Reads the slot that the unit is in.
    virtual unsigned char getSlotNumber() const;
    // Reads the number of UTOPIA buses.
    virtual unsigned char getUtopiaBusCount() const;
    // Looks up the UTOPIA address of a port; every value of the answer is zero when the call fails.
    virtual PortBpData getUtopiaAddress(PortBpData const& port) const;
    // Reserves the UTOPIA address of a port.
    virtual ResponseInfo<RunClient> reserveUtopiaAddress(PortBpData const& port) const;
    // Releases the UTOPIA address of a port.
    virtual void cancelUtopiaAddressReservation(PortBpData const& port) const;
};

template <>
struct Operations<TransmissionUnitClient>
    : OperationList<TransmissionUnitClient, 0x291ad33c, Operation<0, &TransmissionUnitClient::getHwmUnit>,
                    Operation<1, &TransmissionUnitClient::getHwmType>,
                    Operation<2, &TransmissionUnitClient::getSlotNumber>,
                    Operation<3, &TransmissionUnitClient::getUtopiaBusCount>,
                    Operation<4, &TransmissionUnitClient::getUtopiaAddress>,
                    Operation<5, &TransmissionUnitClient::reserveUtopiaAddress>,
                    Operation<6, &TransmissionUnitClient::cancelUtopiaAddressReservation>> {};
