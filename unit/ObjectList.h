// The proxies that an object of the unit keeps in a list: each object once.
#pragma once

#include "rmi/TipprmiSequence.h"

#include <algorithm>

namespace trs::sim {

template <class Proxy>
class ObjectList {
public:
    // False for an object that is in the list already, for an unbound proxy, and when the list is full.
    bool insert(Proxy const& object)
    {
        if (object.getOID().isNull() || contains(object) || objects_.getLength() == most) {
            return false;
        }
        objects_.push_back(object);
        return true;
    }
    // False for an object that is not in the list.
    bool remove(Proxy const& object)
    {
        auto const kept = std::remove_if(objects_.begin(), objects_.end(), sameAs(object));
        bool const isFound = kept != objects_.end();
        objects_.setLength(static_cast<unsigned long>(kept - objects_.begin()));
        return isFound;
    }
    bool contains(Proxy const& object) const { return std::any_of(objects_.begin(), objects_.end(), sameAs(object)); }
    TipprmiSequence<Proxy> const& all() const { return objects_; }
    // As it stands, for those who keep it.
    TipprmiSequence<Proxy>& list() { return objects_; }

private:
    static constexpr unsigned long most = 256;

    static auto sameAs(Proxy const& object)
    {
        return [&object](Proxy const& other) { return other.isSameObject(object); };
    }

    TipprmiSequence<Proxy> objects_;
};

} // namespace trs::sim
