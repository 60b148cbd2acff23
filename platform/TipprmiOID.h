// Identifiers of managed objects.
#pragma once

#include <string>

// The space that an identifier's text is unique in. This system's own objects live in namespace 1.
class NamespaceId {
public:
    explicit constexpr NamespaceId(unsigned long value) : value_(value) {}
    constexpr unsigned long value() const { return value_; }
    friend constexpr bool operator==(NamespaceId, NamespaceId) = default;

private:
    unsigned long value_;
};

// The identifier of one managed object: a text within a namespace. A null or empty text designates no object.
class TipprmiOID {
public:
    TipprmiOID(char const* id, NamespaceId space) : id_(id != nullptr ? id : ""), space_(space) {}
    TipprmiOID(std::string id, NamespaceId space) : id_(std::move(id)), space_(space) {}
    // An identifier of this system: the text in namespace 1.
    TipprmiOID(char const* id) : TipprmiOID(id, NamespaceId(1)) {}
    TipprmiOID(std::string id) : TipprmiOID(std::move(id), NamespaceId(1)) {}

    std::string const& getIdString() const { return id_; }
    NamespaceId getNamespace() const { return space_; }
    bool isNull() const { return id_.empty(); }
    friend bool operator==(TipprmiOID const&, TipprmiOID const&) = default;

private:
    std::string id_;
    NamespaceId space_;
};
