// What a unit's objects tell, or are to tell: a snapshot, a part of one, or what somebody wrote by hand.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/ObjectName.h"
#include "catalogue/Value.h"

#include <map>
#include <string>
#include <vector>

namespace trs::ctl {

struct UnitState {
    // A read and what it tells, by name; of one that takes a key a list of such, the key among them.
    struct Reading {
        catalogue::Operation const* operation;
        catalogue::Value told;
    };
    struct Object {
        catalogue::ObjectName name;
        catalogue::Class const* type = nullptr;
        bool isThere = true; // else it is not, or is not to be
        std::vector<Reading> readings = {};

        Reading const* find(catalogue::Operation const& operation) const;
    };

    bool isComplete = false;               // what it does not name is not there
    std::map<std::string, Object> objects; // by identifier

    Object const* find(std::string const& id) const;
    // Whether an object of that identifier is there.
    bool has(std::string const& id) const;
};

// Reads what a unit told (UnitDocument.h). What it could not tell is left out.
UnitState readTold(catalogue::Value const& document);

// Reads what somebody wants of a unit that tells `now`, as the unit would tell it. Classes, operations and constants
// are taken in any case; a read is called by its name or by what it reads, and its only value may stand for the whole:
// {"objects": {"EthIfNet:IfNet/Transport": {"mtu": 1400}}}. Fields that are left out are as they are now; null is an
// object that is not to be. Empty, or what is wrong, with the place of it.
std::string readWanted(catalogue::Value const& document, UnitState const& now, UnitState& wanted);

} // namespace trs::ctl
