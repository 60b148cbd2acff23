// The objects of the simulated unit, by their classes, and the time they share.
#pragma once

#include "catalogue/Class.h"
#include "unit/Clock.h"
#include "unit/Load.h"
#include "unit/Signal.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace trs::sim {

class Object;

class Inventory {
public:
    // Told of changes, under the run permission.
    class Keeper {
    public:
        virtual ~Keeper() = default;
        // A fact of the object has changed or is about to, or the object is new.
        virtual void changed(Object const& object) = 0;
        virtual void gone(std::string const& id) = 0;

    protected:
        Keeper() = default;
        Keeper(Keeper const&) = default;
        Keeper& operator=(Keeper const&) = default;
    };

    // With another seed, numbers that have no reason to be the same in all units are others; with the same one, the
    // same.
    explicit Inventory(unsigned long seed = 0) : load_(seed), seed_(seed) {}
    Inventory(Inventory const&) = delete;
    Inventory& operator=(Inventory const&) = delete;

    void add(Object& object);
    void remove(Object const& object);
    // In the order in which they were added.
    std::vector<Object*> const& all() const { return objects_; }
    // Null when there is none.
    Object* find(std::string const& id) const;

    // Null: nobody, as at first.
    void setKeeper(Keeper* keeper) { keeper_ = keeper; }
    void tellChange(Object const& object)
    {
        if (keeper_ != nullptr) {
            keeper_->changed(object);
        }
    }

    Clock& clock() { return clock_; }
    unsigned long seed() const { return seed_; }
    // What was counted before stays.
    void setSeed(unsigned long seed);
    Load& load() { return load_; }
    // Given when an object began or ceased to work.
    Signal& states() { return states_; }
    // A number from 0 to `most` that depends on the seed and on what it is for; 0 while the seed is 0.
    unsigned long vary(std::string_view purpose, unsigned long most) const;

    // The objects of a class, or of one derived from it, that belong to an object: those whose identifiers begin with
    // its own. When there are none, all of that class but the object itself; among them those of the very class, if
    // any.
    std::vector<Object*> related(std::string const& id, std::string_view className) const;

private:
    std::vector<Object*> objects_;
    std::unordered_map<std::string_view, Object*> byId_; // the objects' own identifiers
    Keeper* keeper_ = nullptr;
    Clock clock_;
    Load load_;
    Signal states_;
    unsigned long seed_;
};

// Whether the identifier is `prefix` with a decimal number from `least` to `most` behind it, in its shortest form.
bool numberBehind(std::string_view prefix, std::string_view id, long least, long most, long& number);

// Whether `type` is the class of that name or derived from it.
bool isA(catalogue::Class const& type, std::string_view className);

} // namespace trs::sim
