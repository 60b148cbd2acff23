// How every kind of value travels: values back to back, big-endian, without tags, names or padding.
#pragma once

#include "platform/TipprmiObjectClient.h"
#include "platform/TipprmiStream.h"
#include "platform/TipprmiString.h"
#include "platform/TreflectObject.h"
#include "rmi/ByteOrder.h"
#include "rmi/Record.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

// Wire<T> has, for every T that an operation may carry:
//     size               bytes of the wire form, or 0 when it varies
//     leastSize          bytes that no wire form is shorter than
//     write(stream, v)   appends the wire form
//     read(stream, v)    reads it; what cannot be read is left as it was
// and, where size is not 0, the same on memory that is known to be large enough:
//     put(place, v), get(place, v)
// A type without a Wire does not travel, and using one in an operation does not compile.
template <class T>
struct Wire;

namespace wire {

template <class... T>
inline constexpr bool isOneOf = false;
template <class T, class... Others>
inline constexpr bool isOneOf<T, Others...> = (std::is_same_v<T, Others> || ...);

// read() and write() of a form of fixed size, by put() and get().
template <class T, std::size_t Size>
struct FixedForm {
    static constexpr std::size_t size = Size;
    static constexpr std::size_t leastSize = Size;
    static void write(TipprmiStream& stream, T const& value) { Wire<T>::put(stream.extend(Size), value); }
};

// An integer of the host in `Bytes` bytes of the wire; a host's wider one loses its upper bits, as it always has.
template <class T, std::size_t Bytes>
struct IntegerForm : FixedForm<T, Bytes> {
    using Unsigned =
        std::conditional_t<Bytes == 1, std::uint8_t, std::conditional_t<Bytes == 2, std::uint16_t, std::uint32_t>>;
    using Same = std::conditional_t<std::is_signed_v<T>, std::make_signed_t<Unsigned>, Unsigned>;

    static void put(unsigned char* place, T value) { store(place, static_cast<Unsigned>(value)); }
    static void get(unsigned char const* place, T& value)
    {
        value = static_cast<T>(static_cast<Same>(load<Unsigned>(place)));
    }
    static void read(TipprmiStream& stream, T& value)
    {
        if (unsigned char const* const place = stream.take(Bytes)) {
            get(place, value);
        }
    }
};

} // namespace wire

template <>
struct Wire<unsigned char> : wire::IntegerForm<unsigned char, 1> {};
template <>
struct Wire<short> : wire::IntegerForm<short, 2> {};
template <>
struct Wire<unsigned short> : wire::IntegerForm<unsigned short, 2> {};
template <>
struct Wire<int> : wire::IntegerForm<int, 4> {};
template <>
struct Wire<long> : wire::IntegerForm<long, 4> {};
template <>
struct Wire<unsigned long> : wire::IntegerForm<unsigned long, 4> {};

// 4 bytes; any value but 0 is true. A failed read gives false.
template <>
struct Wire<bool> : wire::FixedForm<bool, 4> {
    static void put(unsigned char* place, bool value) { wire::store<std::uint32_t>(place, value ? 1 : 0); }
    static void get(unsigned char const* place, bool& value) { value = wire::load<std::uint32_t>(place) != 0; }
    static void read(TipprmiStream& stream, bool& value)
    {
        unsigned char const* const place = stream.take(4);
        value = place != nullptr && wire::load<std::uint32_t>(place) != 0;
    }
};

// A signed 32-bit value; read without a range test.
template <class T>
    requires std::is_enum_v<T>
struct Wire<T> : wire::FixedForm<T, 4> {
    static void put(unsigned char* place, T value) { Wire<int>::put(place, static_cast<int>(value)); }
    static void get(unsigned char const* place, T& value)
    {
        int number;
        Wire<int>::get(place, number);
        value = static_cast<T>(number);
    }
    static void read(TipprmiStream& stream, T& value)
    {
        if (unsigned char const* const place = stream.take(4)) {
            get(place, value);
        }
    }
};

template <>
struct Wire<std::string> {
    static constexpr std::size_t size = 0;
    static constexpr std::size_t leastSize = 4;
    static void write(TipprmiStream& stream, std::string const& value) { stream << value; }
    static void read(TipprmiStream& stream, std::string& value) { stream >> value; }
};

// Object references.
template <class T>
    requires std::is_base_of_v<TipprmiObjectClient, T>
struct Wire<T> {
    static constexpr std::size_t size = 0;
    static constexpr std::size_t leastSize = 8;
    static void write(TipprmiStream& stream, TipprmiObjectClient const& value) { stream << value; }
    static void read(TipprmiStream& stream, T& value)
    {
        if constexpr (std::is_base_of_v<TreflectObject, T>) {
            stream >> static_cast<TreflectObject&>(value);
        } else {
            stream >> static_cast<TipprmiObjectClient&>(value);
        }
    }
};

// N elements, no count.
template <class T, unsigned long N>
struct Wire<TipprmiArray<T, N>> {
    using Array = TipprmiArray<T, N>;
    static constexpr std::size_t size = N * Wire<T>::size;
    static constexpr std::size_t leastSize = N * Wire<T>::leastSize;
    static constexpr bool isBulk = wire::isOneOf<T, short, unsigned short>;

    static void put(unsigned char* place, Array const& value)
    {
        if constexpr (isBulk) {
            wire::copyOrdered16<N>(place, value.data());
        } else {
            for (unsigned long i = 0; i < N; ++i) {
                Wire<T>::put(place + i * Wire<T>::size, value.data()[i]);
            }
        }
    }
    static void get(unsigned char const* place, Array& value)
    {
        if constexpr (isBulk) {
            wire::copyOrdered16<N>(value.data(), place);
        } else {
            for (unsigned long i = 0; i < N; ++i) {
                Wire<T>::get(place + i * Wire<T>::size, value.data()[i]);
            }
        }
    }
    static void write(TipprmiStream& stream, Array const& value)
    {
        if constexpr (size != 0) {
            put(stream.extend(size), value);
        } else {
            for (T const& element : value) {
                Wire<T>::write(stream, element);
            }
        }
    }
    static void read(TipprmiStream& stream, Array& value)
    {
        if constexpr (size != 0) {
            if (stream.available() >= size) [[likely]] {
                if (unsigned char const* const place = stream.take(size)) {
                    get(place, value);
                }
            } else {
                readPart(stream, value);
            }
        } else {
            for (unsigned long i = 0; i < N; ++i) {
                Wire<T>::read(stream, value.data()[i]);
            }
        }
    }

private:
    // The elements that are there.
    [[gnu::cold, gnu::noinline]] static void readPart(TipprmiStream& stream, Array& value)
    {
        for (unsigned long i = 0; i < N; ++i) {
            Wire<T>::read(stream, value.data()[i]);
        }
    }
};

namespace wire {

template <class Fields>
struct FieldSizes;
template <auto... Members>
struct FieldSizes<Fields<Members...>> {
    template <class>
    struct TypeOf;
    template <class Class, class Field>
    struct TypeOf<Field Class::*> {
        using type = Field;
    };
    template <auto Member>
    using Form = Wire<typename TypeOf<std::remove_const_t<decltype(Member)>>::type>;

    static constexpr bool isFixed = ((Form<Members>::size != 0) && ...);
    static constexpr std::size_t least = (Form<Members>::leastSize + ...);
};

template <auto... Members>
Fields<Members...> fieldsOf(Fields<Members...> const&);

// Arrays that fill half a chunk of copyOrdered16(). Two that stand together, as addresses do, go in one chunk: tables
// of them are the longest content there is.
template <class Field>
inline constexpr bool isHalfChunk = false;
template <class T>
inline constexpr bool isHalfChunk<TipprmiArray<T, 4>> = Wire<TipprmiArray<T, 4>>::isBulk;

// Puts or gets the fields of a record of fixed size, one after the other.
class FieldPutter {
public:
    explicit FieldPutter(unsigned char* place) : place_(place) {}
    template <class Field>
    void operator()(Field const& field)
    {
        if constexpr (isHalfChunk<Field>) {
            if (waiting_ == nullptr) {
                waiting_ = field.data();
            } else {
                joinOrdered16(place_, std::exchange(waiting_, nullptr), field.data());
                place_ += 16;
            }
        } else {
            finish();
            Wire<Field>::put(place_, field);
            place_ += Wire<Field>::size;
        }
    }
    void finish()
    {
        if (waiting_ != nullptr) {
            copyOrdered16<4>(place_, std::exchange(waiting_, nullptr));
            place_ += 8;
        }
    }

private:
    unsigned char* place_;
    void const* waiting_ = nullptr;
};

class FieldGetter {
public:
    explicit FieldGetter(unsigned char const* place) : place_(place) {}
    template <class Field>
    void operator()(Field& field)
    {
        if constexpr (isHalfChunk<Field>) {
            if (waiting_ == nullptr) {
                waiting_ = field.data();
            } else {
                splitOrdered16(std::exchange(waiting_, nullptr), field.data(), place_);
                place_ += 16;
            }
        } else {
            finish();
            Wire<Field>::get(place_, field);
            place_ += Wire<Field>::size;
        }
    }
    void finish()
    {
        if (waiting_ != nullptr) {
            copyOrdered16<4>(std::exchange(waiting_, nullptr), place_);
            place_ += 8;
        }
    }

private:
    unsigned char const* place_;
    void* waiting_ = nullptr;
};

} // namespace wire

// The fields in order.
template <Record T>
struct Wire<T> {
    using Sizes = wire::FieldSizes<decltype(wire::fieldsOf(RecordFields<T>{}))>;
    static constexpr std::size_t size = Sizes::isFixed ? Sizes::least : 0;
    static constexpr std::size_t leastSize = Sizes::least;

    static void put(unsigned char* place, T const& value)
    {
        wire::FieldPutter putter(place);
        RecordFields<T>::forEach(value, putter);
        putter.finish();
    }
    static void get(unsigned char const* place, T& value)
    {
        wire::FieldGetter getter(place);
        RecordFields<T>::forEach(value, getter);
        getter.finish();
    }
    static void write(TipprmiStream& stream, T const& value)
    {
        if constexpr (size != 0) {
            put(stream.extend(size), value);
        } else {
            RecordFields<T>::forEach(value,
                                     [&stream]<class Field>(Field const& field) { Wire<Field>::write(stream, field); });
        }
    }
    static void read(TipprmiStream& stream, T& value)
    {
        if constexpr (size != 0) {
            if (stream.available() >= size) [[likely]] {
                if (unsigned char const* const place = stream.take(size)) {
                    get(place, value);
                }
            } else {
                readPart(stream, value);
            }
        } else {
            RecordFields<T>::forEach(value, [&stream]<class Field>(Field& field) { Wire<Field>::read(stream, field); });
        }
    }

private:
    // The fields that are there.
    [[gnu::cold, gnu::noinline]] static void readPart(TipprmiStream& stream, T& value)
    {
        RecordFields<T>::forEach(value, [&stream]<class Field>(Field& field) { Wire<Field>::read(stream, field); });
    }
};

// The count and the elements. A count that no message could hold is refused before memory is taken for it: the
// failure is recorded and the sequence is empty. A count that is merely wrong sizes the sequence.
template <class T, unsigned long N>
struct Wire<TipprmiSequence<T, N>> {
    using Sequence = TipprmiSequence<T, N>;
    static constexpr std::size_t size = 0;
    static constexpr std::size_t leastSize = 4;

    static void write(TipprmiStream& stream, Sequence const& value)
    {
        unsigned long const count = value.getLength();
        Wire<unsigned long>::write(stream, count);
        if constexpr (Wire<T>::size != 0) {
            unsigned char* place = stream.extend(count * Wire<T>::size);
            for (T const& element : value) {
                Wire<T>::put(place, element);
                place += Wire<T>::size;
            }
        } else {
            for (T const& element : value) {
                Wire<T>::write(stream, element);
            }
        }
    }
    static void read(TipprmiStream& stream, Sequence& value)
    {
        unsigned long count = 0;
        Wire<unsigned long>::read(stream, count);
        if (count > TIPPRMI_MAX_MESSAGE / Wire<T>::leastSize) {
            stream.fail();
            count = 0;
        }
        if constexpr (Wire<T>::size != 0) {
            value.setLength(count);
            if (stream.available() >= count * Wire<T>::size) [[likely]] {
                if (unsigned char const* place = stream.take(count * Wire<T>::size)) {
                    for (T& element : value) {
                        Wire<T>::get(place, element);
                        place += Wire<T>::size;
                    }
                    return;
                }
            }
            readPart(stream, value);
        } else {
            value.setLength(0);
            value.setLength(count);
            for (T& element : value) {
                Wire<T>::read(stream, element);
            }
        }
    }

private:
    // What there is of the elements, the others as if new.
    [[gnu::cold, gnu::noinline]] static void readPart(TipprmiStream& stream, Sequence& value)
    {
        for (T& element : value) {
            T received{};
            Wire<T>::read(stream, received);
            element = received;
        }
    }
};

template <class T, unsigned long N>
inline constexpr bool isSentOnly<TipprmiArray<T, N>> = isSentOnly<T>;
template <class T, unsigned long N>
inline constexpr bool isSentOnly<TipprmiSequence<T, N>> = isSentOnly<T>;
