// What a simulated unit holds, as a JSON document.
#pragma once

#include "catalogue/Value.h"

#include <string>

namespace trs::sim {

class Unit;

// {"format": 2, "complete": true, "seed": 0, "load": "steady", "time": 900, "faults": ["cut operation=IfNet.getMtu"],
//  "objects": {"EthIfNet:IfNet/Transport": {"getMtu": {"mtu": 1500}, ...}, ...}}
//
// An object has its facts (Facts.h), mostly by the operation that tells them. docs/trssim.md describes it for users.
namespace scenario {

// In a stable order: two units that tell the same give the same document. The calling thread is under the run
// permission, as in apply().
catalogue::Value save(Unit& unit);
// The same without the objects.
catalogue::Value saveWhole(Unit& unit);

// Makes the unit hold what the document says. An object that the unit does not have is created, one that is null is
// removed, and with "complete" every one that the document does not name. Facts are taken back, and have their effects
// when all are; what is no fact of an object it tells from then on whatever happens. A document that is wrong changes
// nothing: the result names the first thing that is; empty when there is none.
std::string apply(Unit& unit, catalogue::Value const& document);

// apply() of what a file says. Empty, or what is wrong with the file.
std::string load(Unit& unit, std::string const& file);
// save() to a file, whose content is replaced as a whole or not at all. Empty, or why it cannot.
std::string store(Unit& unit, std::string const& file);

} // namespace scenario

} // namespace trs::sim
