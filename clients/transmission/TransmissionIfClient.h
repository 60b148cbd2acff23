// TransmissionIfClient: a transmission interface, the path that application objects reserve, handed out by
// Mlp3HdlcClient::getTransmissionIf().
#pragma once

#include "clients/services/ConditionClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "clients/transmission/PortBpData.h"
#include "clients/transmission/TransmissionUnitClient.h"
#include "platform/QelLongClient.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/TipprmiSequence.h"

// The server keeps the reservations. Results are an unbound proxy, an empty sequence or zeros when the call fails;
// operations that return nothing report nothing.
class TransmissionIfClient : public PhyObjectClient {
public:
    using Parent = PhyObjectClient;
    using PhyObjectClient::PhyObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<TransmissionIfClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the attribute object whose value is the path type, as TransmissionPortClient::getPathType() tells it.
    virtual QelLongClient getPathType() const;
    // Reads the objects that have the interface reserved.
    virtual TipprmiSequence<ApplicationObjectClient> getReservationSeq() const;
    // Reads the unit that carries the interface.
    virtual TransmissionUnitClient getTransmissionUnit() const;
    // Reads the backplane data of the interface's port.
    virtual PortBpData getPortBpData() const;
    // Reads the trail termination point of the interface: its proxy by value, despite the name.
    virtual ApplicationObjectClient getTrailTpPtr() const;
    // Reads the fault condition of loss of cell delineation (LOCD).
    virtual ConditionClient getLocd() const;
    // Records an object as a user of the interface.
    virtual void reserve(ApplicationObjectClient const& user) const;
    // Takes an object's reservation back.
    virtual void cancelReservation(ApplicationObjectClient const& user) const;
    // Takes all reservations back.
    virtual void resetReservations() const;
};

template <>
struct Operations<TransmissionIfClient>
    : OperationList<
          TransmissionIfClient, 0x9b651b94, Operation<0, &TransmissionIfClient::getPathType>,
          Operation<1, &TransmissionIfClient::getReservationSeq>,
          Operation<2, &TransmissionIfClient::getTransmissionUnit>, Operation<3, &TransmissionIfClient::getPortBpData>,
          Operation<4, &TransmissionIfClient::getTrailTpPtr>, Operation<5, &TransmissionIfClient::getLocd>,
          Operation<6, &TransmissionIfClient::reserve>, Operation<7, &TransmissionIfClient::cancelReservation>,
          Operation<8, &TransmissionIfClient::resetReservations>> {};
