// The root of the proxies that take part in reflection.
#pragma once

#include "platform/TipprmiObjectClient.h"
#include "platform/TreflectMetaObject.h"

#include <cstddef>
#include <string>
#include <vector>

class TreflectObject;
class TreflectObserver;

// One operation of one object.
class TreflectOperation {
public:
    TreflectOperation(TreflectObject const& object, TreflectMetaOperation const& meta, bool exists);

    // Whether the object's class has the operation.
    bool exists() const { return exists_; }
    TreflectMetaOperation const& meta() const { return meta_; }
    // Registers an observer to be told after every execution of the operation, whoever causes it. The subscription
    // is renewed when a lost connection comes back. False when the object cannot be reached or has no such
    // operation; nothing is registered then.
    bool postObserve(TreflectObserver* observer) const;
    // Ends that registration, with the guarantee of TreflectObserver::withdraw().
    bool removeObserver(TreflectObserver* observer) const;

private:
    TipprmiObjectClient object_;
    TreflectMetaOperation meta_;
    bool exists_;
};

// A proxy with reflection: its class's meta object, its operations by name, and a tree of names in this process.
class TreflectObject : public TipprmiObjectClient {
public:
    using TipprmiObjectClient::TipprmiObjectClient;
    TreflectObject();
    TreflectObject(TreflectObject const&) = default;
    TreflectObject& operator=(TreflectObject const&) = default;
    ~TreflectObject() override;

    // Proxies on the heap; null when there is no memory.
    static void* operator new(std::size_t size) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* place) noexcept;

    using TipprmiObjectClient::connect;
    // The attribute of that name; null: no class of this system has attributes.
    virtual TreflectMetaObject::MetaAttrData const* attribute(std::string const& name) const;
    // The operation of that name of the proxy's class or a class it derives from.
    virtual TreflectOperation operation(std::string const& name) const;
    // The completed meta object of the proxy's class; null for a class without one.
    virtual TreflectMetaObject* meta() const;

    // The names of the path to this object in the process's tree of registered objects, joined by "/".
    virtual std::string getAbsName() const;
    // The name under which the object was registered; the identifier's text when it was not.
    virtual std::string getRelName() const;
    // The object that this one was registered with as a child; unbound when there is none.
    virtual TreflectObject getParent() const;
    virtual TreflectObject getChild(std::string const& name) const;
    virtual std::vector<TreflectObject> getChilds() const;
    virtual bool registerChild(std::string const& name, TreflectObject const& child) const;
    virtual bool unregisterChild(std::string const& name) const;
    virtual void connect(TipprmiOID const& oid);
    // `kind`: 1, after the execution; there is no other.
    virtual bool registerObserver(unsigned long kind, TreflectMetaOperation const* operation,
                                  TreflectObserver* observer) const;
    virtual bool removeObserver(TreflectMetaOperation const* operation, TreflectObserver* observer) const;
};

TipprmiStream& operator>>(TipprmiStream& stream, TreflectObject& object);
