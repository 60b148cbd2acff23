// The variable sequence of a call.
#pragma once

#include "platform/TipprmiForward.h"

#include <cstddef>
#include <type_traits>
#include <vector>

// Contiguous elements of T. N is the declared bound, 0 for none; nothing checks the length against it.
template <class T, unsigned long N>
class TipprmiSequence {
    static_assert(!std::is_same_v<T, bool>, "bool elements would not be objects of their own");

public:
    unsigned long getLength() const { return static_cast<unsigned long>(elements_.size()); }
    // Elements beyond the new length are destroyed; added ones are value-initialised.
    void setLength(unsigned long length) { elements_.resize(length); }

    // Element `index`, or element 0 when there is none of that index. An empty sequence answers with a spare
    // element, fresh each time and valid until the same thread asks again.
    T& operator[](unsigned long index)
    {
        return index < elements_.size() ? elements_[index] : elements_.empty() ? spare() : elements_[0];
    }
    T const& operator[](unsigned long index) const
    {
        return index < elements_.size() ? elements_[index] : elements_.empty() ? spare() : elements_[0];
    }
    void push_back(T const& element) { elements_.push_back(element); }

    T* data() { return elements_.data(); }
    T const* data() const { return elements_.data(); }
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }

    friend bool operator==(TipprmiSequence const& left, TipprmiSequence const& right)
    {
        return left.elements_ == right.elements_;
    }

private:
    [[gnu::noinline, gnu::cold]] static T& spare()
    {
        thread_local T element{};
        element = T{};
        return element;
    }

    std::vector<T> elements_;
};
