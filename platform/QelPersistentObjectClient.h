// The framework's proxy of an object that its server stores.
#pragma once

#include "platform/QelBaseClient.h"
#include "platform/TipprmiForward.h"

class QelPersistentObjectClient : public QelBaseClient {
public:
    using Parent = QelBaseClient;
    using QelBaseClient::QelBaseClient;

    static TreflectMetaObject* staticMeta();

    // Tells those who observe the object that it changed.
    virtual void sendChangeEvent() const;
    // The object's content as texts; empty when the call fails.
    virtual TipprmiSequence<std::string> serialise() const;
    // Replaces the object's content. Whether the server accepted it.
    virtual bool deserialise(TipprmiSequence<std::string> const& content) const;
};
