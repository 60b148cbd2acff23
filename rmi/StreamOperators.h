// The stream operators of every type that an operation carries. Those of strings and object references are the
// framework's (platform/TipprmiString.h, TipprmiObjectClient.h, TreflectObject.h).
#pragma once

#include "rmi/ResponseInfo.h"
#include "rmi/Wire.h"

#include <type_traits>

TipprmiStream& operator<<(TipprmiStream& stream, bool const& value);
TipprmiStream& operator<<(TipprmiStream& stream, unsigned char const& value);
TipprmiStream& operator<<(TipprmiStream& stream, short const& value);
TipprmiStream& operator<<(TipprmiStream& stream, unsigned short const& value);
TipprmiStream& operator<<(TipprmiStream& stream, int const& value);
TipprmiStream& operator<<(TipprmiStream& stream, long const& value);
TipprmiStream& operator<<(TipprmiStream& stream, unsigned long const& value);
// No other type turns into one of these on its way.
template <class T>
    requires std::is_arithmetic_v<T>
TipprmiStream& operator<<(TipprmiStream& stream, T const& value) = delete;

TipprmiStream& operator>>(TipprmiStream& stream, bool& value);
TipprmiStream& operator>>(TipprmiStream& stream, unsigned char& value);
TipprmiStream& operator>>(TipprmiStream& stream, short& value);
TipprmiStream& operator>>(TipprmiStream& stream, unsigned short& value);
TipprmiStream& operator>>(TipprmiStream& stream, int& value);
TipprmiStream& operator>>(TipprmiStream& stream, long& value);
TipprmiStream& operator>>(TipprmiStream& stream, unsigned long& value);

template <class T>
inline constexpr bool isContainer = false;
template <class T, unsigned long N>
inline constexpr bool isContainer<TipprmiArray<T, N>> = true;
template <class T, unsigned long N>
inline constexpr bool isContainer<TipprmiSequence<T, N>> = true;

// Types whose operators follow from their declaration.
template <class T>
concept DerivedForm = std::is_enum_v<T> || Record<T> || isContainer<T>;

template <DerivedForm T>
TipprmiStream& operator<<(TipprmiStream& stream, T const& value)
{
    Wire<T>::write(stream, value);
    return stream;
}

template <DerivedForm T>
    requires(!isSentOnly<T>)
TipprmiStream& operator>>(TipprmiStream& stream, T& value)
{
    Wire<T>::read(stream, value);
    return stream;
}
