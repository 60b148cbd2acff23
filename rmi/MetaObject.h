// The meta object of a proxy class, from its operation list.
#pragma once

#include "rmi/Operations.h"

#include <span>
#include <string_view>

// What a meta object tells of its class.
struct MetaDescription {
    std::string_view className;
    unsigned long classId;
    std::span<TreflectMetaObject::MetaOpData const> operations;
    TreflectMetaObject* (*parent)(); // completes and gives the base's meta object; null for a root
};

// A meta object that is completed from a description.
class DescribedMetaObject : public TreflectMetaObject {
public:
    void completeMetaInformation() override;
    // This object, completed.
    TreflectMetaObject* completed();

protected:
    // The description is static.
    explicit DescribedMetaObject(MetaDescription const& description);

private:
    MetaDescription const& description_;
};

// XClient::ClientSpecificMetaObject. The proxy names its base as `Parent`; a base with a meta object of its own is the
// meta parent.
template <class Proxy>
class ProxyMetaObject final : public DescribedMetaObject {
public:
    ProxyMetaObject() : DescribedMetaObject(description) {}

private:
    static constexpr auto parentMeta()
    {
        TreflectMetaObject* (*meta)() = nullptr;
        if constexpr (requires { Proxy::Parent::staticMeta(); }) {
            meta = &Proxy::Parent::staticMeta;
        }
        return meta;
    }
    static constexpr MetaDescription description{Operations<Proxy>::className, Operations<Proxy>::classId,
                                                 Operations<Proxy>::table, parentMeta()};
};
