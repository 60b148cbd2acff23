// AtmCrossConnectionClient: an ATM cross-connection; handed out as the class that derives from it.
#pragma once

#include "clients/transmission/AtmPersistentObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"

#include <string>

// The base of AtmVcCrossConnectionClient. Operations with a plain result return zero, false or an empty text when the
// call fails; zero is also RECOVERABLE. Operations named internal are called like all others.
class AtmCrossConnectionClient : public AtmPersistentObjectClient {
public:
    using Parent = AtmPersistentObjectClient;
    using AtmPersistentObjectClient::AtmPersistentObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<AtmCrossConnectionClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Recovery types.
    static constexpr int RECOVERABLE = 0;
    static constexpr int NONRECOVERABLE = 1;

    // Reads the recovery type, one of RECOVERABLE..NONRECOVERABLE.
    virtual long getRecoveryType() const;
    // Reads the redline flag; what it means, the server decides.
    virtual bool getRedline() const;
    // Reads the label that the user gave the cross-connection.
    virtual std::string getUserLabel() const;
    // Reads the identifier of the cross-connection.
    virtual unsigned long internalGetXcId() const;
    // Sets the user label.
    virtual ResponseInfo<SetClient> setUserLabel(std::string const& label) const;
    // Sets the identifier of the cross-connection; reports nothing.
    virtual void internalSetXcId(unsigned long const& id) const;
};

template <>
struct Operations<AtmCrossConnectionClient>
    : OperationList<AtmCrossConnectionClient, 0x5d43391f, Operation<0, &AtmCrossConnectionClient::getRecoveryType>,
                    Operation<1, &AtmCrossConnectionClient::getRedline>,
                    Operation<2, &AtmCrossConnectionClient::getUserLabel>,
                    Operation<3, &AtmCrossConnectionClient::internalGetXcId>,
                    Operation<4, &AtmCrossConnectionClient::setUserLabel>,
                    Operation<5, &AtmCrossConnectionClient::internalSetXcId>> {};
