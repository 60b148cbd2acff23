// The framework's proxy of a collection of objects, each under an index that is a text.
#pragma once

#include "platform/QelBaseClient.h"
#include "platform/TipprmiForward.h"

class QelFabricBaseClient : public QelBaseClient {
public:
    using Parent = QelBaseClient;
    using QelBaseClient::QelBaseClient;

    static TreflectMetaObject* staticMeta();

    // The number of objects; 0 when the call fails.
    virtual unsigned long getSize() const;
    // The indexes of all objects; empty when the call fails.
    virtual TipprmiSequence<std::string> getIndexes() const;
};
