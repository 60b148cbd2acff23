// The framework's value proxies: what every value object offers.
#pragma once

#include "platform/TreflectObject.h"

// An attribute that is an object of its own, or a collection of them. Operations return zero or false when the call
// fails.
class QelBaseClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    QelBaseClient() = default;
    explicit QelBaseClient(TreflectObject const& other) : TreflectObject(other) {}

    static TreflectMetaObject* staticMeta();

    virtual bool isReadonly() const;
    virtual bool isPersistent() const;
    virtual bool isReplicated() const;
    // Whether the value was ever set.
    virtual bool isInitialised() const;
    // 0 when initialisation succeeded; the server decides the other values.
    virtual long getInitStatus() const;
    // Back to the value's default.
    virtual void clear() const;
    // The same without the checks that apply to clients.
    virtual void internalClear() const;
};
