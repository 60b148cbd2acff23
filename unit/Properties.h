// What an object of the simulated unit keeps without knowing what it means.
#pragma once

#include "catalogue/Value.h"
#include "unit/Inventory.h"
#include "unit/ListRules.h"

#include <map>
#include <string>
#include <vector>

class TipprmiStream;

namespace trs::sim {

// Answers every operation of a class by its name and shape (catalogue/OperationKind.h) and the rules on lists
// (ListRules.h):
//   getX, isX, hasX   tell what the last setX with the same types was given, and with the same leading arguments, where
//                     setX takes some that getX takes too
//   object references that nobody set lead to the related objects of the inventory; everything else that nobody set
//                     is 0, false or empty
//   setX              keeps its arguments and succeeds
//   an operation that a rule is about changes or asks a list, or is refused
//   everything else   fails, or tells 0, false or nothing, and changes nothing
class Properties {
public:
    using Values = std::vector<catalogue::Value>;

    // The keys of a map, each as the only argument of an operation.
    template <class Map>
    static std::vector<Values> keysOf(Map const& map)
    {
        std::vector<Values> keys;
        keys.reserve(map.size());
        for (auto const& [key, value] : map) {
            keys.push_back({key});
        }
        return keys;
    }

    // What an operation tells, called with these arguments; or what one that no other reads was given.
    struct Kept {
        catalogue::Operation const* operation;
        Values arguments;
        Values told;
    };

    Properties(std::string id, catalogue::Class const& type, Inventory const& inventory)
        : id_(std::move(id)), type_(type), inventory_(inventory)
    {
    }

    // As Servant::Other has it.
    bool answer(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);

    // All that is kept, in a stable order.
    std::vector<Kept> all() const;
    // False when there is no room.
    bool keep(Kept kept);
    void clear() { kept_.clear(); }
    catalogue::Operation const* find(unsigned long classId, unsigned long opIndex) const;

private:
    struct Answer {
        bool isDone;
        Values told; // by a reader or one like it; else empty
    };

    static constexpr std::size_t mostEntries = 1024;

    Answer carryOut(catalogue::Operation const& operation, Values const& arguments);
    Answer follow(ListRule const& rule, catalogue::Operation const& operation, Values const& arguments);
    bool set(catalogue::Operation const& setter, Values const& arguments);
    Values told(catalogue::Operation const& reader, Values const& arguments) const;
    catalogue::Value initial(catalogue::Type const& type) const;

    std::string const id_;
    catalogue::Class const& type_;
    Inventory const& inventory_;
    std::map<std::string, Kept> kept_; // by the operation's name and its arguments
};

} // namespace trs::sim
