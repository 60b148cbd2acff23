#include "rmi/StreamOperators.h"

namespace {

template <class T>
TipprmiStream& put(TipprmiStream& stream, T const& value)
{
    Wire<T>::write(stream, value);
    return stream;
}

template <class T>
TipprmiStream& get(TipprmiStream& stream, T& value)
{
    Wire<T>::read(stream, value);
    return stream;
}

} // namespace

TipprmiStream& operator<<(TipprmiStream& stream, bool const& value) { return put(stream, value); }
TipprmiStream& operator<<(TipprmiStream& stream, unsigned char const& value) { return put(stream, value); }
TipprmiStream& operator<<(TipprmiStream& stream, short const& value) { return put(stream, value); }
TipprmiStream& operator<<(TipprmiStream& stream, unsigned short const& value) { return put(stream, value); }
TipprmiStream& operator<<(TipprmiStream& stream, int const& value) { return put(stream, value); }
TipprmiStream& operator<<(TipprmiStream& stream, long const& value) { return put(stream, value); }
TipprmiStream& operator<<(TipprmiStream& stream, unsigned long const& value) { return put(stream, value); }

TipprmiStream& operator>>(TipprmiStream& stream, bool& value) { return get(stream, value); }
TipprmiStream& operator>>(TipprmiStream& stream, unsigned char& value) { return get(stream, value); }
TipprmiStream& operator>>(TipprmiStream& stream, short& value) { return get(stream, value); }
TipprmiStream& operator>>(TipprmiStream& stream, unsigned short& value) { return get(stream, value); }
TipprmiStream& operator>>(TipprmiStream& stream, int& value) { return get(stream, value); }
TipprmiStream& operator>>(TipprmiStream& stream, long& value) { return get(stream, value); }
TipprmiStream& operator>>(TipprmiStream& stream, unsigned long& value) { return get(stream, value); }
