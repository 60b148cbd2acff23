// Signatures as the catalogue writes them, from the types that the compiler sees.
#pragma once

#include "rmi/Operations.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>
#include <tuple>
#include <type_traits>

inline std::string typeText(std::type_identity<void>) { return "void"; }
inline std::string typeText(std::type_identity<bool>) { return "bool"; }
inline std::string typeText(std::type_identity<unsigned char>) { return "unsigned char"; }
inline std::string typeText(std::type_identity<short>) { return "short"; }
inline std::string typeText(std::type_identity<unsigned short>) { return "unsigned short"; }
inline std::string typeText(std::type_identity<int>) { return "int"; }
inline std::string typeText(std::type_identity<long>) { return "long"; }
inline std::string typeText(std::type_identity<unsigned long>) { return "unsigned long"; }
inline std::string typeText(std::type_identity<std::string>) { return "string"; }

template <class T>
std::string typeText(std::type_identity<T>)
{
    return std::string(reflect::className<T>);
}
template <class X>
std::string typeText(std::type_identity<ResponseInfo<X>>)
{
    return "ResponseInfo<" + typeText(std::type_identity<X>{}) + ">";
}
template <class T, unsigned long N>
std::string typeText(std::type_identity<TipprmiArray<T, N>>)
{
    return "TipprmiArray<" + typeText(std::type_identity<T>{}) + ", " + std::to_string(N) + ">";
}
template <class T, unsigned long N>
std::string typeText(std::type_identity<TipprmiSequence<T, N>>)
{
    return "TipprmiSequence<" + typeText(std::type_identity<T>{}) + (N != 0 ? ", " + std::to_string(N) : "") + ">";
}

// "in long; out bool", or "-" when there are no parameters.
template <class... A>
std::string parametersText(std::type_identity<std::tuple<A...>>)
{
    std::string text;
    [[maybe_unused]] auto const append = [&text]<class Argument>(std::type_identity<Argument>) {
        using Type = std::remove_reference_t<Argument>;
        static_assert(std::is_lvalue_reference_v<Argument>, "arguments are references");
        text += text.empty() ? "" : "; ";
        text += std::is_const_v<Type> ? "in " : "out ";
        text += typeText(std::type_identity<std::remove_const_t<Type>>{});
    };
    (append(std::type_identity<A>{}), ...);
    return text.empty() ? "-" : text;
}
