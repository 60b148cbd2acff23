// The catalogue at run time: every interface, operation and type, as the compiler knows them from the proxy classes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

struct Type;

struct Field {
    std::string_view name;
    Type const* type;
};

struct Enumerator {
    std::string_view name;
    int value;
};

// A type that travels.
struct Type {
    enum class Kind {
        boolean,
        octet,      // unsigned char
        int16,      // short
        unsigned16, // unsigned short
        int32,      // int and long
        unsigned32, // unsigned long
        enumeration,
        text,
        array,
        sequence,
        record,
        object, // a reference to one
        status, // ResponseInfo
    };

    Kind kind;
    std::string_view name;                        // of a scalar, an enumeration, a record or a proxy class
    Type const* element = nullptr;                // of an array or a sequence
    unsigned long count = 0;                      // of an array
    std::span<Field const> fields = {};           // of a record, in marshalling order
    std::span<Enumerator const> enumerators = {}; // of an enumeration: those with names, by value

    // As a signature has it: "long", "TipprmiSequence<IfNetClient::IpAddrInfo>".
    std::string text() const;
    // What the header says behind a record's field; often nothing.
    std::string_view commentOf(std::string_view field) const;
};

struct Parameter {
    Type const* type;
    bool isIn; // else out
};

struct Operation {
    std::string_view name;
    std::uint32_t index;
    Type const* result; // null: none
    std::span<Parameter const> parameters;
    std::string_view className; // of the class that declares it
    std::uint32_t classId;
    bool isLocal; // an object in the caller's process is called as it is, without a message

    // As the header declares the parameters, in their order.
    std::vector<std::string_view> parameterNames() const;
    // What the header says of it.
    std::string_view comment() const;
    // What a parameter that is a number is counted in, as the header says: "octets", "cells per second"; often nothing.
    std::string_view unitOf(Parameter const& parameter) const;
    // "ResponseInfo<GetClient> getMtu(out long mtu)"
    std::string signature() const;
};

struct Class {
    std::string_view name;      // "IfNetClient"
    std::string_view interface; // "IfNet"
    std::uint32_t id;
    std::string_view baseName;      // a class of the catalogue or one of the framework
    std::span<Operation const> own; // in index order

    // Null when the base is the framework's.
    Class const* base() const;
    // The operation of that name, inherited ones included; null when there is none.
    Operation const* find(std::string_view operation) const;
    // All, the base's first.
    std::vector<Operation const*> operations() const;
};

// By name: those of the library's proxies, the framework's value objects (Qel...), and the simulator's own controls.
std::span<Class const* const> classes();
// By class or interface name, or null.
Class const* findClass(std::string_view name);
Class const* findClass(std::uint32_t id);
// The operation of that class and index; null when the catalogue has none. Fast: a few comparisons.
Operation const* findOperation(std::uint32_t classId, std::uint32_t index);

} // namespace trs::catalogue
