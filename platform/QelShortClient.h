// The framework's proxy of a short-valued attribute object.
#pragma once

#include "platform/QelBaseClient.h"

class QelShortClient : public QelBaseClient {
public:
    using Parent = QelBaseClient;
    using QelBaseClient::QelBaseClient;

    static TreflectMetaObject* staticMeta();

    // The value; 0 when the call fails.
    virtual short get() const;
    // Sets the value. Whether the server accepted it.
    virtual bool set(short const& value) const;
    // The same without the checks that apply to clients.
    virtual short internalGet() const;
    virtual bool internalSet(short const& value) const;
};
