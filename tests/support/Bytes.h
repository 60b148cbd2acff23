// Bytes as hexadecimal text, so that the expected wire forms stand in the tests the way they stand on the wire.
#pragma once

#include "rmi/StreamOperators.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

// "00 0A FF" for those three bytes.
inline std::string hex(unsigned char const* data, std::size_t size)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += text.empty() ? "" : " ";
        text += digits[data[i] >> 4];
        text += digits[data[i] & 15];
    }
    return text;
}
inline std::string hex(TipprmiStream const& stream) { return hex(stream.data(), stream.size()); }

template <class T>
std::string wireForm(T const& value)
{
    TipprmiStream stream(100);
    stream << value;
    return hex(stream);
}

// `count` times the same bytes.
inline std::string repeated(std::size_t count, std::string_view bytes)
{
    std::string text;
    while (count-- > 0) {
        text += text.empty() ? "" : " ";
        text += bytes;
    }
    return text;
}

// A stream with the bytes of the text, to be read.
inline TipprmiStream streamOf(std::string_view text)
{
    TipprmiStream stream(100);
    for (std::size_t i = 0; i + 1 < text.size(); i += 3) {
        *stream.extend(1) = static_cast<unsigned char>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16));
    }
    return stream;
}

// `value`, after it was read from the bytes of the text.
template <class T>
T readFrom(std::string_view text, T value = T{})
{
    TipprmiStream stream = streamOf(text);
    stream >> value;
    return value;
}

template <class T>
TipprmiSequence<T> sequenceOf(std::initializer_list<T> elements)
{
    TipprmiSequence<T> sequence;
    for (T const& element : elements) {
        sequence.push_back(element);
    }
    return sequence;
}

template <class T, class... Element>
TipprmiArray<T, sizeof...(Element)> arrayOf(Element... elements)
{
    TipprmiArray<T, sizeof...(Element)> array;
    unsigned long index = 0;
    ((array[index++] = static_cast<T>(elements)), ...);
    return array;
}
