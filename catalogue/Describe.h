// From proxy classes to their descriptions; for Classes.cpp alone.
#pragma once

#include "catalogue/Class.h"
#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"
#include "rmi/Wire.h"

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace trs::catalogue::describe {

template <class T>
struct TypeOf;

template <class T>
inline constexpr Type type = TypeOf<T>::make();

template <>
struct TypeOf<bool> {
    static constexpr Type make() { return {Type::Kind::boolean, "bool"}; }
};
template <>
struct TypeOf<unsigned char> {
    static constexpr Type make() { return {Type::Kind::octet, "unsigned char"}; }
};
template <>
struct TypeOf<short> {
    static constexpr Type make() { return {Type::Kind::int16, "short"}; }
};
template <>
struct TypeOf<unsigned short> {
    static constexpr Type make() { return {Type::Kind::unsigned16, "unsigned short"}; }
};
template <>
struct TypeOf<int> {
    static constexpr Type make() { return {Type::Kind::int32, "int"}; }
};
template <>
struct TypeOf<long> {
    static constexpr Type make() { return {Type::Kind::int32, "long"}; }
};
template <>
struct TypeOf<unsigned long> {
    static constexpr Type make() { return {Type::Kind::unsigned32, "unsigned long"}; }
};
template <>
struct TypeOf<std::string> {
    static constexpr Type make() { return {Type::Kind::text, "string"}; }
};

// The enumerators are those of the values below this one; the compiler tells which have names.
inline constexpr int mostEnumerators = 64;

// A value without a name is spelled "(E)5".
consteval std::string_view nameIn(std::string_view pretty)
{
    std::string_view const text = reflect::argumentOf(pretty);
    return text.front() == '(' ? std::string_view() : reflect::lastComponent(text);
}

template <class E, int Value>
inline constexpr std::string_view enumeratorName = nameIn(reflect::prettyMember<static_cast<E>(Value)>());

template <class E>
struct EnumeratorsOf {
    template <int... Value>
    static constexpr auto collect(std::integer_sequence<int, Value...>)
    {
        constexpr std::size_t count = ((enumeratorName<E, Value>.empty() ? 0U : 1U) + ...);
        std::array<Enumerator, count> found{};
        std::size_t i = 0;
        ((enumeratorName<E, Value>.empty() ? void() : void(found[i++] = {enumeratorName<E, Value>, Value})), ...);
        return found;
    }
    static constexpr auto all = collect(std::make_integer_sequence<int, mostEnumerators>{});
};

template <class T>
    requires std::is_enum_v<T>
struct TypeOf<T> {
    static constexpr Type make()
    {
        return {Type::Kind::enumeration, reflect::className<T>, nullptr, 0, {}, EnumeratorsOf<T>::all};
    }
};

template <class T>
    requires std::is_base_of_v<TipprmiObjectClient, T>
struct TypeOf<T> {
    static constexpr Type make() { return {Type::Kind::object, reflect::className<T>}; }
};

template <class X>
struct TypeOf<ResponseInfo<X>> {
    static constexpr Type make() { return {Type::Kind::status, reflect::className<X>}; }
};

template <class T, unsigned long N>
struct TypeOf<TipprmiArray<T, N>> {
    static constexpr Type make() { return {Type::Kind::array, {}, &type<T>, N}; }
};

template <class T, unsigned long N>
struct TypeOf<TipprmiSequence<T, N>> {
    static constexpr Type make() { return {Type::Kind::sequence, {}, &type<T>}; }
};

template <class>
struct FieldTypeOf;
template <class Class, class T>
struct FieldTypeOf<T Class::*> {
    using type = T;
};

template <class List>
struct FieldsOf;
template <auto... Members>
struct FieldsOf<Fields<Members...>> {
    static constexpr std::array<Field, sizeof...(Members)> all{Field{
        reflect::memberName<Members>, &type<typename FieldTypeOf<std::remove_const_t<decltype(Members)>>::type>}...};
};

template <Record T>
struct TypeOf<T> {
    using List = decltype(wire::fieldsOf(std::declval<RecordFields<T> const&>()));
    static constexpr Type make()
    {
        return {Type::Kind::record, reflect::className<T>, nullptr, 0, FieldsOf<List>::all};
    }
};

template <class Arguments>
struct ParametersOf;
template <class... A>
struct ParametersOf<std::tuple<A...>> {
    static constexpr std::array<Parameter, sizeof...(A)> all{
        Parameter{&type<std::remove_cvref_t<A>>, std::is_const_v<std::remove_reference_t<A>>}...};
};

template <class Result>
constexpr Type const* resultType()
{
    if constexpr (std::is_void_v<Result>) {
        return nullptr;
    } else {
        return &type<Result>;
    }
}

template <class Proxy>
constexpr std::string_view baseName()
{
    if constexpr (requires { typename Proxy::Parent; }) {
        return reflect::className<typename Proxy::Parent>;
    } else {
        return reflect::className<TipprmiObjectClient>;
    }
}

template <class Proxy, class Rows>
struct OperationsOf;
template <class Proxy, class... Row>
struct OperationsOf<Proxy, RowList<Row...>> {
    static constexpr std::array<Operation, sizeof...(Row)> all{
        Operation{Row::name, Row::index, resultType<typename Row::Signature::Result>(),
                  ParametersOf<typename Row::Signature::Arguments>::all, Operations<Proxy>::className,
                  Operations<Proxy>::classId, Row::isLocal}...};
};

template <class Proxy>
inline constexpr Class described{Operations<Proxy>::className, Operations<Proxy>::interfaceName,
                                 Operations<Proxy>::classId, baseName<Proxy>(),
                                 OperationsOf<Proxy, typename Operations<Proxy>::Rows>::all};

} // namespace trs::catalogue::describe
