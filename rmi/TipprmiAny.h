// One value of any type that travels, held in its wire form.
#pragma once

#include "rmi/StreamOperators.h"

#include <type_traits>

// Carries no tag: which type it holds is known from where it came from, the signature of an operation.
class TipprmiAny : public TipprmiStream {
public:
    // Holds nothing.
    TipprmiAny() : TipprmiStream(100) {}
    template <class T>
        requires(!std::is_base_of_v<TipprmiStream, T>)
    explicit TipprmiAny(T const& value) : TipprmiStream(100)
    {
        *this << value;
    }

    // Reads the value into `value`, as often as wanted. False, with `value` as it was, when this is no whole T.
    template <class T>
    bool extract(T& value) const
    {
        TipprmiStream copy(*this);
        T received{};
        Wire<T>::read(copy, received);
        if (copy.hasUnmarshallingFailed() || copy.available() != 0) {
            return false;
        }
        value = received;
        return true;
    }
};
