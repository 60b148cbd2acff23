// What an object of the simulated unit keeps without knowing what it means.
#pragma once

#include "catalogue/Value.h"
#include "unit/ListRules.h"
#include "unit/Object.h"

#include <functional>
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

    // What an operation tells, called with these arguments; or what one that no other reads was given.
    struct Kept {
        catalogue::Operation const* operation;
        Values arguments;
        Values told;
    };

    // `isOthers` tells which operations something else answers.
    using IsOthers = std::function<bool(catalogue::Operation const&)>;
    Properties(Object& object, IsOthers isOthers) : object_(object), isOthers_(std::move(isOthers)) {}

    // As Servant::Other has it.
    bool answer(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);

    // What is kept, for the object's facts: by operation the results, or of one that takes arguments a list with the
    // arguments and the results of each.
    Facts::Others facts();
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

    void say(catalogue::Value& object) const;
    std::string take(catalogue::Operation const& operation, catalogue::Value const& told);
    std::string takeEntry(catalogue::Operation const& operation, catalogue::Value const& told);
    bool keep(Kept kept);

    Object& object_;
    IsOthers const isOthers_;
    std::map<std::string, Kept> kept_; // by the operation's name and its arguments
};

} // namespace trs::sim
