// ApplicationObjectSenaPolicyClient: the policy that ApplicationObjectClient::setSenaPolicy() attaches to an
// application object.
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"

class ApplicationObjectClient;

// Asked about an application object, answers with a yes-or-no state.
class ApplicationObjectSenaPolicyClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    ApplicationObjectSenaPolicyClient() = default;
    explicit ApplicationObjectSenaPolicyClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<ApplicationObjectSenaPolicyClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // Reads the policy's state for an application object; false when the call fails. The server decides its meaning.
    virtual bool getState(ApplicationObjectClient const& application) const;
};
