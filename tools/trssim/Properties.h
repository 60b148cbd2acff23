// What an object of the simulated unit keeps without knowing what it means.
#pragma once

#include "tools/catalogue/Value.h"
#include "tools/trssim/Inventory.h"

#include <map>
#include <string>
#include <vector>

class TipprmiStream;

namespace sim {

// Answers every operation of a class by its name and shape alone:
//   getX, isX, hasX   tell what the last setX with the same types was given, and with the same leading arguments, where
//                     setX takes some that getX takes too
//   object references that nobody set lead to the related objects of the inventory; everything else that nobody set
//                     is 0, false or empty
//   setX              keeps its arguments and succeeds
//   everything else   fails, or tells 0, false or nothing, and changes nothing
class Properties {
public:
    Properties(std::string id, catalogue::Class const& type, Inventory const& inventory)
        : id_(std::move(id)), type_(type), inventory_(inventory)
    {
    }

    // As Servant::Other has it.
    bool answer(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);

private:
    using Values = std::vector<catalogue::Value>;

    static constexpr std::size_t mostEntries = 1024;

    catalogue::Operation const* find(unsigned long classId, unsigned long opIndex) const;
    catalogue::Operation const* readerOf(catalogue::Operation const& setter) const;
    bool keep(catalogue::Operation const& setter, Values const& arguments);
    catalogue::Value told(catalogue::Operation const& reader, Values const& arguments, std::size_t place,
                          catalogue::Type const& type) const;
    catalogue::Value initial(catalogue::Type const& type) const;

    std::string const id_;
    catalogue::Class const& type_;
    Inventory const& inventory_;
    // By the reader's name and its arguments: what it tells, in order.
    std::map<std::string, Values> kept_;
};

} // namespace sim
