// Which operations set what others read: by name and types, as the catalogue has them.
#pragma once

#include "catalogue/Class.h"

#include <vector>

namespace trs::sim {

// getX, isX, hasX and the like.
bool isReader(catalogue::Operation const& operation);
// setX, updateX, internalSetX.
bool isSetter(catalogue::Operation const& operation);

// The types that an operation takes or tells, in order; a status is not told.
std::vector<catalogue::Type const*> typesOf(catalogue::Operation const& operation, bool isIn);

// The operation of the class that reads what `setter` sets: it tells what the setter takes, or what is left of that
// behind arguments that both take. Null when there is none.
catalogue::Operation const* readerOf(catalogue::Class const& type, catalogue::Operation const& setter);
// The other way round.
catalogue::Operation const* setterOf(catalogue::Class const& type, catalogue::Operation const& reader);

} // namespace trs::sim
