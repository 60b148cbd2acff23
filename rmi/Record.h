// What travels in one call besides scalars: structures, each naming its fields once.
#pragma once

#include "rmi/NameOf.h"

#include <cstddef>
#include <type_traits>

// The fields of a structure in marshalling order, which is also their order of declaration.
template <auto... Members>
struct Fields {
    static constexpr std::size_t count = sizeof...(Members);

    // Calls `visit` with each field of `record` in turn.
    template <class Record, class Visitor>
    static constexpr void forEach(Record& record, Visitor&& visit)
    {
        (visit(record.*Members), ...);
    }
    // Calls `visit` with each field's name and value in turn.
    template <class Record, class Visitor>
    static constexpr void forEachNamed(Record& record, Visitor&& visit)
    {
        (visit(reflect::memberName<Members>, record.*Members), ...);
    }
};

// Specialised beside every structure that travels:
//     template <>
//     struct RecordFields<IfNetClient::IpAddrInfo>
//         : Fields<&IfNetClient::IpAddrInfo::ipAddress, &IfNetClient::IpAddrInfo::address2> {};
// From it follow both stream operators, printing and reading as text.
template <class T>
struct RecordFields;

template <class T>
concept Record = requires { RecordFields<T>::count; };

// Set beside a type that proxies only send: it gets no reading operator, so that reading one does not compile.
// Servers read it all the same, through Wire.
template <class T>
inline constexpr bool isSentOnly = false;
