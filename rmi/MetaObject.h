// The meta object of a proxy class, from its operation list.
#pragma once

#include "rmi/Operations.h"

#include <string>

// XClient::ClientSpecificMetaObject. The proxy names its base as `Parent`; a base with a meta object of its own is the
// meta parent.
template <class Proxy>
class ProxyMetaObject final : public TreflectMetaObject {
public:
    ProxyMetaObject() : TreflectMetaObject(std::string(Operations<Proxy>::className), Operations<Proxy>::classId) {}

    void completeMetaInformation() override
    {
        Completion const completion(*this);
        if (!completion.isFirst()) {
            return;
        }
        if constexpr (requires { Proxy::Parent::staticMeta(); }) {
            registerParent(Proxy::Parent::staticMeta());
        }
        completeMetaInformationHelper(Operations<Proxy>::table.data(), Operations<Proxy>::count, nullptr, 0);
    }
    // This object, completed.
    TreflectMetaObject* completed()
    {
        completeMetaInformation();
        return this;
    }
};
