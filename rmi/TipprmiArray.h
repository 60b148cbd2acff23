// The fixed array of a call: exactly N elements, stored inline.
#pragma once

#include <algorithm>

template <class T, unsigned long N>
class TipprmiArray {
    static_assert(N > 0);

public:
    // Elements are as T's default construction leaves them; TipprmiArray{} sets scalars to zero.
    TipprmiArray() = default;
    TipprmiArray(TipprmiArray const& other) { std::copy_n(other.elements_, N, elements_); }
    TipprmiArray& operator=(TipprmiArray const& other)
    {
        if (this != &other) {
            std::copy_n(other.elements_, N, elements_);
        }
        return *this;
    }
    virtual ~TipprmiArray() = default;

    // Element `index`, or element 0 when there is none of that index.
    T& operator[](unsigned long index) { return elements_[index < N ? index : 0]; }
    T const& operator[](unsigned long index) const { return elements_[index < N ? index : 0]; }

    static constexpr unsigned long getLength() { return N; }
    T* data() { return elements_; }
    T const* data() const { return elements_; }
    T const* begin() const { return elements_; }
    T const* end() const { return elements_ + N; }

    friend bool operator==(TipprmiArray const& left, TipprmiArray const& right)
    {
        for (unsigned long i = 0; i < N; ++i) {
            if (!(left.elements_[i] == right.elements_[i])) {
                return false;
            }
        }
        return true;
    }

private:
    T elements_[N];
};
