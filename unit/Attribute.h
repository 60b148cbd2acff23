// A value of an object of the simulated unit that is an object itself: what QelLongClient and QelShortClient reach.
#pragma once

#include "unit/Object.h"

#include <functional>
#include <string>
#include <vector>

namespace trs::sim {

// Serves what all value objects tell of themselves; `clear` gives the value that it had at first.
void serveValueObject(Servant& servant, std::function<void()> const& clear);

// The value that an operation such as getPathType() hands out.
class Attribute {
public:
    // `owner` hands it out by `reader`, which has no parameters.
    Attribute(Object& owner, catalogue::Operation const& reader);
    Attribute(Attribute const&) = delete;
    Attribute& operator=(Attribute const&) = delete;

    // Whether an operation hands one out.
    static bool isHandedOutBy(catalogue::Operation const& operation);
    // The identifier of the one that `owner` hands out by `reader`: that of the outermost object which it belongs to
    // and which hands out the same, so that a unit and its ports have one path type.
    static std::string idOf(Object const& owner, catalogue::Operation const& reader);

private:
    struct Kind {
        long initial = 0;
        std::vector<long> values = {}; // empty: any
    };

    static Kind kindOf(Object const& owner, catalogue::Operation const& reader);
    template <class Client, class T>
    void serve(T& value);

    Kind const kind_;
    long long_ = kind_.initial;
    short short_ = static_cast<short>(kind_.initial);
    Object object_;
};

} // namespace trs::sim
