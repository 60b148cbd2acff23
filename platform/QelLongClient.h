// The framework's proxy of a long-valued attribute object, and its server's side.
#pragma once

#include "platform/QelBaseClient.h"
#include "platform/TipprmiObjectSkeleton.h"

class QelLongClient : public QelBaseClient {
public:
    using Parent = QelBaseClient;
    using QelBaseClient::QelBaseClient;

    static TreflectMetaObject* staticMeta();

    // The value; 0 when the call fails.
    virtual long get() const;
    // Sets the value. Whether the server accepted it.
    virtual bool set(long const& value) const;
    // The same without the checks that apply to clients.
    virtual long internalGet() const;
    virtual bool internalSet(long const& value) const;
};

// Serves QelLongClient and QelBaseClient for a value that a derived class keeps.
class QelLongSkeleton : public TipprmiObjectSkeleton {
public:
    virtual long get() = 0;
    virtual bool set(long const& value) = 0;

    bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                  TipprmiStream& reply) override;

protected:
    QelLongSkeleton() = default;
    explicit QelLongSkeleton(TipprmiOID const& oid) : TipprmiObjectSkeleton(oid) {}
};
